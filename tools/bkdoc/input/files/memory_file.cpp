#include "input/files/memory_file.h"

#include "core/sys_file.h"

#include <algorithm>
#include <cstring>
#include <string_view>
#include <utility>

namespace bkdoc {

namespace {

class ReadHandle : public SysHandle {
public:
    explicit ReadHandle(const std::string& bytes) : rest_(bytes) {}

    core_int64 read(char* buffer, std::size_t size) override {
        const std::size_t count = std::min(size, rest_.size());
        std::memcpy(buffer, rest_.data(), count);
        rest_.remove_prefix(count);
        return static_cast<core_int64>(count);
    }
    core_int64 write(const char*, std::size_t) override { return -1; }
    bool sync() override { return true; }
    bool close() override { return true; }

private:
    std::string_view rest_;
};

class WriteHandle : public SysHandle {
public:
    explicit WriteHandle(std::string& bytes) : bytes_(bytes) { bytes_.clear(); }

    core_int64 read(char*, std::size_t) override { return -1; }
    core_int64 write(const char* data, std::size_t size) override {
        bytes_.append(data, size);
        return static_cast<core_int64>(size);
    }
    bool sync() override { return true; }
    bool close() override { return true; }

private:
    std::string& bytes_;
};

// The library may ask for the absolute path, which has a drive in front on Windows.
bool is_memory(const std::string& path) {
    return path == MemoryFile::name || path == SysFilesystem::get_full_file_path(MemoryFile::name).get_view();
}

} // namespace

// An empty file is not reported as regular, because a save replaces a regular file with a new one instead of writing into it.
SysPathInfo MemoryFile::inspect(const std::string& path) {
    if (is_memory(path)) {
        return {bytes_.empty() ? SysPathKind::other : SysPathKind::regular,
                static_cast<core_int64>(bytes_.size())};
    }
    return beneath().inspect(path);
}

std::unique_ptr<SysHandle> MemoryFile::open_for_reading(const std::string& path) {
    return is_memory(path) ? std::make_unique<ReadHandle>(bytes_) : beneath().open_for_reading(path);
}

std::unique_ptr<SysHandle> MemoryFile::open_in_place(const std::string& path) {
    return is_memory(path) ? std::make_unique<WriteHandle>(bytes_) : beneath().open_in_place(path);
}

std::string MemoryFile::resolve_links(const std::string& path) {
    return is_memory(path) ? path : beneath().resolve_links(path);
}

} // namespace bkdoc
