#pragma once

#include "core/core_export.h"
#include "core/core_string.h"

#include <cstddef>
#include <memory>
#include <string>

/// An open file of the operating system: bytes, without translation. The destructor closes it.
class BK_PARSER_API SysHandle {
public:
    virtual ~SysHandle();
    /// Bytes read, 0 at the end, negative on an error. May give fewer than asked for.
    virtual core_int64 read(char* buffer, std::size_t size) = 0;
    /// Bytes taken, negative on an error. May take fewer than offered.
    virtual core_int64 write(const char* data, std::size_t size) = 0;
    /// Flushes to the disk.
    virtual bool sync() = 0;
    /// False when the system says that not everything was stored.
    virtual bool close() = 0;
};

enum class SysPathKind { missing, regular, directory, other };

/// What stands at a path.
struct SysPathInfo {
    /// What stands there.
    SysPathKind kind = SysPathKind::missing;
    /// In bytes, of a regular file.
    core_int64 size = 0;
};

/// The only way by which the library reaches a disk. A host or a test may replace the platform's device, for example to
/// serve files from memory, to refuse paths, or to let call number n fail. `inspect` gets paths as they were named, relative ones
/// too. An exception that a function throws ends the operation and passes to its caller; std::bad_alloc counts as out of memory.
/// The library first removes a file that it was writing, and drops what `remove` throws then.
class BK_PARSER_API SysDevice {
public:
    virtual ~SysDevice();

    /// What stands under that path. Links are followed.
    virtual SysPathInfo inspect(const std::string& path) = 0;
    /// Null when it cannot be opened.
    virtual std::unique_ptr<SysHandle> open_for_reading(const std::string& path) = 0;
    /// Opens an existing target that is not a regular file.
    virtual std::unique_ptr<SysHandle> open_in_place(const std::string& path) = 0;
    /// Creates a new file beside `target`, with the target's permissions where it exists; fills in its path.
    virtual std::unique_ptr<SysHandle> create_beside(const std::string& target,
                                                     std::string& created_path) = 0;
    /// Renames the file `from` to `to` in one step, replaces what is there, and flushes the folder to the disk.
    virtual bool replace(const std::string& from, const std::string& to) = 0;
    /// False when the file could not be removed.
    virtual bool remove(const std::string& path) = 0;
    /// The path that symbolic links lead to; the path itself where there are none, empty when they
    /// lead nowhere that a file can be created.
    virtual std::string resolve_links(const std::string& path) = 0;
    /// The folder that relative paths begin in.
    virtual std::string current_folder() = 0;

    /// The device in use, never null; the platform's at first. Replaced only while no file is open.
    static SysDevice& get();
    /// Null puts the platform's device back. The caller keeps the device alive while it is in use.
    static void set(SysDevice* device);
};
