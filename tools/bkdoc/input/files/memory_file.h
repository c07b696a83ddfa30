#pragma once

#include "platform/device_layer.h"

#include <string>
#include <utility>

namespace bkdoc {

/// While one lives, the library reads and writes a file that is in memory only at one path, and every other path where it
/// did before. Not for threads.
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
