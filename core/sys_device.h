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
    /// Returns the number of bytes read: 0 at the end, negative on an error. May read fewer than asked for.
    virtual core_int64 read(char* buffer, std::size_t size) = 0;
    /// Returns the number of bytes written, negative on an error. May write fewer than offered.
    virtual core_int64 write(const char* data, std::size_t size) = 0;
    /// Flushes to the disk.
    virtual bool sync() = 0;
    /// Closes the file. False when the system reports that not everything was stored.
    virtual bool close() = 0;
};

enum class SysPathKind { missing, regular, directory, other };

/// What a path leads to.
struct SysPathInfo {
    /// The kind of file.
    SysPathKind kind = SysPathKind::missing;
    /// The size of a regular file in bytes.
    core_int64 size = 0;
};

/// All system calls on files. The library reaches a disk in no other way. A host or a test may replace the platform's device, for
/// example to serve files from memory, to refuse paths, or to make call number n fail. `inspect` gets paths as they were named, also
/// relative ones. An exception that a function throws ends the operation and passes to its caller; std::bad_alloc counts as out of memory.
/// The library first removes a file that it was writing, and drops what `remove` throws then.
class BK_PARSER_API SysDevice {
public:
    virtual ~SysDevice();

    /// What that path leads to. Follows links.
    virtual SysPathInfo inspect(const std::string& path) = 0;
    /// Opens a file to read it; null when it cannot be opened.
    virtual std::unique_ptr<SysHandle> open_for_reading(const std::string& path) = 0;
    /// Opens an existing target that is not a regular file, to write it.
    virtual std::unique_ptr<SysHandle> open_in_place(const std::string& path) = 0;
    /// Creates a new file beside `target`, with the target's permissions where it exists; fills in its path.
    virtual std::unique_ptr<SysHandle> create_beside(const std::string& target,
                                                     std::string& created_path) = 0;
    /// Renames the file `from` to `to` in one step, replaces what is there, and flushes the folder to the disk.
    virtual bool replace(const std::string& from, const std::string& to) = 0;
    /// Removes a file. False when it could not be removed.
    virtual bool remove(const std::string& path) = 0;
    /// The path that symbolic links lead to; the path itself where there are none, empty when they
    /// lead nowhere that a file can be created.
    virtual std::string resolve_links(const std::string& path) = 0;
    /// The folder to which relative paths refer.
    virtual std::string current_folder() = 0;

    /// The device in use; at first the platform's.
    static SysDevice& get();
    /// Replaces the device; null puts the platform's device back. Call it only while no file is open and no other thread uses the
    /// library. The caller keeps the device alive while it is in use.
    static void set(SysDevice* device);
};
