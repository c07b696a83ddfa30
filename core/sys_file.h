#pragma once

#include "core/core_export.h"
#include "core/core_string.h"

#include <memory>

/// One open file. `close` closes it; then it can be opened again. When an object that is open for writing dies or is opened
/// again without `close`, what was written is discarded and the target stays as it was.
///
/// Writing replaces: the bytes go to a new file beside the target. When every write was whole, `close` flushes the new file to
/// the disk and renames it over the target. Until then, and whenever anything fails, the old file stays as it was and the new one
/// is removed. The new file gets the old file's permissions. When the target is a symbolic link, the file that it leads to is
/// replaced. A target that is not a regular file (a pipe, a device) is written in place.
class BK_PARSER_API SysFile {
public:
    /// Whether a file is read or written.
    enum Mode : unsigned int { MODE_READ = 0, MODE_WRITE = 1 };
    /// TYPE_TEXT translates line ends as the platform's C runtime does: CR LF on Windows, nothing elsewhere.
    enum Type : unsigned int { TYPE_TEXT = 0, TYPE_BINARY = 1 };

    SysFile();
    ~SysFile();
    SysFile(const SysFile&) = delete;
    SysFile& operator=(const SysFile&) = delete;

    /// Opens a file. False when that fails; a directory cannot be opened. Paths are UTF-8.
    bool open(const CoreString& path, const Mode& mode, const Type& type);

    /// Reads up to `count` items of `item_size` bytes; returns the bytes read.
    core_int64 read(void* buffer, const core_int64& item_size, const core_int64& count);
    /// Reads up to `size` bytes into a string, which then holds just these; returns their number.
    core_int64 read(CoreString& text, const core_int64& size);

    /// Writes bytes; returns how many were taken.
    core_int64 write(const char* data, const core_int64& size);
    /// Writes the characters. False when not all of them could be written.
    core_int64 write(const CoreString& text);

    /// The size in bytes of the file as it was opened for reading; 0 otherwise.
    const core_int64& get_size() const noexcept { return size_; }

    /// Closes the file. Returns false when not everything that was written is on the disk, for example after the device threw; the
    /// target is then as it was before `open`. Also returns false when a read failed, so that the file may have more than what was
    /// read. Closing a closed file is legal and returns true.
    bool close();

private:
    struct Stream;
    std::unique_ptr<Stream> stream_;
    core_int64 size_ = 0;
};

/// Questions about paths. Paths are UTF-8; on Windows both slashes separate.
class BK_PARSER_API SysFilesystem {
public:
    /// Whether the path leads to something that can be read as a file; a directory is not a file.
    static bool file_exists(const CoreString& path);
    /// The absolute form, without "." and ".." steps. Symbolic links are not followed.
    static CoreString get_full_file_path(const CoreString& path);
    /// The path up to its last separator, without it ("/" for a file in the root); empty when there is none.
    static CoreString get_folder(const CoreString& path);
};
