#pragma once

#include "core/sys_device.h"

#include <string>

namespace bkdoc {

/// While one lives, the library reads and writes a file that is in memory only at one path, and every other path where it
/// did before. Not for threads.
class MemoryFile : public SysDevice {
public:
    explicit MemoryFile(std::string bytes = {});
    ~MemoryFile() override;
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;

    static constexpr const char* name = "/<memory>";

    const std::string& bytes() const noexcept { return bytes_; }

    SysPathInfo inspect(const std::string& path) override;
    std::unique_ptr<SysHandle> open_for_reading(const std::string& path) override;
    std::unique_ptr<SysHandle> open_in_place(const std::string& path) override;
    std::unique_ptr<SysHandle> create_beside(const std::string& target, std::string& created_path) override;
    bool replace(const std::string& from, const std::string& to) override;
    bool remove(const std::string& path) override;
    std::string resolve_links(const std::string& path) override;
    std::string current_folder() override;

private:
    SysDevice& beneath_;
    std::string bytes_;
};

} // namespace bkdoc
