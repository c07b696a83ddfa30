#pragma once

#include "platform/device_layer.h"

#include <string>
#include <utility>

namespace bkdoc {

/// A file in memory. While it lives, the library reads and writes this file at one path; every other path goes to the device
/// that was in use before. Not thread-safe.
class MemoryFile : public DeviceLayer {
public:
    explicit MemoryFile(std::string bytes = {}) : bytes_(std::move(bytes)) {}

    static constexpr const char* name = "/<memory>";

    const std::string& bytes() const noexcept { return bytes_; }

    SysPathInfo inspect(const std::string& path) override;
    std::unique_ptr<SysHandle> open_for_reading(const std::string& path) override;
    std::unique_ptr<SysHandle> open_in_place(const std::string& path) override;
    std::string resolve_links(const std::string& path) override;

private:
    std::string bytes_;
};

} // namespace bkdoc
