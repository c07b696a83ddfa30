#pragma once

#include "core/sys_device.h"

#include <memory>
#include <string>

namespace bk {

/// A file that is written from its beginning: beside a regular target, to take its name in the end; in place
/// where the target is something else. Without a `close` that succeeds nothing is left of it.
class FileOutput {
public:
    FileOutput() = default;
    ~FileOutput();
    FileOutput(const FileOutput&) = delete;
    FileOutput& operator=(const FileOutput&) = delete;

    bool open(const std::string& path, bool translates_text);
    /// Returns how many bytes were taken. A fault is remembered for `close`.
    std::size_t write(const char* data, std::size_t size);
    /// Something that was to be written is missing: `close` will fail.
    void fail() noexcept { failed_ = true; }
    /// Whether everything written is stored under the target's name. The object is spent then.
    bool close();

private:
    std::size_t write_bytes(const char* data, std::size_t size);
    bool finish_handle();
    void discard();

    std::unique_ptr<SysHandle> handle_;
    std::string target_;
    std::string created_; // the new file's path as long as it is this object's to remove
    bool translates_text_ = false;
    bool failed_ = false;
};

} // namespace bk
