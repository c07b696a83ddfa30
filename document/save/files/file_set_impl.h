#pragma once

#include "core/sys_device.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace bk_parser {

/// What the save expects to find at a path: the file as it was loaded.
struct KnownFile {
    bool is_there = false;
    std::uint64_t size = 0; // of the stored bytes
    std::uint64_t hash = 0; // ByteHash of these
};

/// Why no file can have this name; empty when one can.
std::string why_no_name(const std::string& path);

/// Replaces several files together. First writes each new file beside its target and flushes it to the disk; when there are
/// several files, does the same with a copy of each old file. Then looks whether the old files are still what is known of them, because
/// writing takes time, in which another program may have saved. At last renames the new files to their targets one after the other,
/// in the order in which they were added. When a step fails, the files that were already replaced get their old bytes back.
///
/// A process that dies before the first rename leaves all old files, and one that dies after the last one leaves all new files.
/// In between, the files that were added first are new and the others are old, each of them complete.
class FileSet {
public:
    FileSet() = default;
    /// Removes the files that were written but not renamed.
    ~FileSet();
    FileSet(const FileSet&) = delete;
    FileSet& operator=(const FileSet&) = delete;

    /// Refers to the bytes, which must live until replace() returns. The old file must be `known`, if that is given.
    void add(std::string path, std::string_view head, std::string_view body,
             const std::optional<KnownFile>& known = {});
    /// Adds bytes that are not needed after they are written: replace() may overwrite them with zeros.
    void add_spent(std::string path, std::string_view body, const std::optional<KnownFile>& known);
    /// Replaces the files. Returns an empty text when every byte is on the disk. Otherwise returns what failed, with the file
    /// and the system's reason, and every file is as it was.
    std::string replace();

private:
    struct File {
        std::string path; // as given
        std::string_view head;
        std::string_view body;
        std::string target; // with symbolic links resolved
        std::string created;
        std::string kept; // copy of the old file
        std::optional<KnownFile> known;
        bool is_spent = false; // nobody needs the body once it is written
        bool had_old = false;
        bool is_replaced = false;
    };

    std::string prepare(File& file);
    std::string keep_old(File& file);
    std::string write_in_place(File& file);
    std::string put_all_in_place();
    bool put_in_place(File& file);
    bool restore() noexcept;

    std::vector<File> files_;
    bool is_out_of_memory_ = false;
};

} // namespace bk_parser
