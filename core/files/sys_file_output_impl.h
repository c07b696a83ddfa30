#pragma once

#include "core/sys_device.h"

#include <memory>
#include <string>

namespace bk {

/// A file that is written from its beginning. When the target is a regular file or missing, a new file beside the target is
/// written, and `close` renames it. Otherwise the target is written in place. Without a successful `close` the new file is
/// removed.
class FileOutput {
public:
    FileOutput() = default;
    ~FileOutput();
    FileOutput(const FileOutput&) = delete;
    FileOutput& operator=(const FileOutput&) = delete;

    bool open(const std::string& path, bool translates_text);
    /// Returns how many bytes were taken. A fault is remembered for `close`.
    std::size_t write(const char* data, std::size_t size);
    /// Makes `close` fail, because something that should have been written is missing.
    void fail() noexcept { failed_ = true; }
    /// Returns whether everything written is stored under the target's name. The object cannot be used afterwards.
    bool close();

private:
    std::size_t write_bytes(const char* data, std::size_t size);
    bool finish_handle();
    void discard();

    std::unique_ptr<SysHandle> handle_;
    std::string target_;
    std::string created_; // the new file's path, as long as this object has to remove the file
    bool translates_text_ = false;
    bool failed_ = false;
};

} // namespace bk
