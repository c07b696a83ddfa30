#pragma once

#include "core/files/sys_line_ends_impl.h"
#include "core/sys_device.h"

#include <memory>
#include <string>

namespace bk {

/// A file that is read from its beginning.
class FileInput {
public:
    /// Opens a file. Reads a pipe, or another file without a size, to its end first. If that has more than `most` bytes, stops there:
    /// size() is then larger than `most`, and nothing can be read.
    bool open(const std::string& path, bool translates_text, core_int64 most = unreadable_size - 1);
    /// Opens a file whose path the caller has inspected, and reads it without translation.
    bool open(const std::string& path, const SysPathInfo& info, core_int64 most);
    /// The file's size when it was opened.
    core_int64 size() const noexcept { return size_; }
    /// About how many bytes are still to come; never negative.
    core_int64 left() const noexcept { return taken_ < size_ ? size_ - taken_ : 0; }
    /// Reads until `size` bytes are there or the file ends; returns their number.
    std::size_t read(char* buffer, std::size_t size);
    /// Makes `close` fail, because something that should have been read is missing.
    void fail() noexcept { failed_ = true; }
    /// Whether no read met an error.
    bool close() noexcept;

private:
    std::size_t take(char* buffer, std::size_t size);
    std::size_t take_ahead(char* buffer, std::size_t size);
    core_int64 read_ahead();
    void read_all_ahead(core_int64 most);

    // No document is this long, and a device that never ends must not fill the memory.
    static constexpr core_int64 unreadable_size = core_int64{1} << 32;

    std::unique_ptr<SysHandle> handle_;
    core_int64 size_ = 0;
    core_int64 taken_ = 0;
    bool translates_text_ = false;
    bool ended_ = false;
    bool failed_ = false;
    LineEndReader line_ends_;
    std::string ahead_; // bytes that were read from the handle and not yet given out
    std::size_t ahead_at_ = 0;
};

} // namespace bk
