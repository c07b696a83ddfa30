#pragma once

#include "core/sys_device.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace bk_parser {

/// Files that are replaced together. First every new file is written beside its target and flushed to the disk, and when there are
/// several, so is a copy of each old file. Only then do the new files take their targets' names, one behind the other in the order in
/// which they were added. When one of these steps fails, the files that were replaced get their old bytes back.
///
/// A process that dies before the first name is taken leaves all old files, and one that dies behind the last leaves all new ones. Between,
/// the files that were added first are new and the others are old, each of them whole.
class FileSet {
public:
    FileSet() = default;
    /// Removes what was written and not put in place.
    ~FileSet();
    FileSet(const FileSet&) = delete;
    FileSet& operator=(const FileSet&) = delete;

    /// The bytes are the caller's, and stay until the files are replaced.
    void add(std::string path, std::string_view head, std::string_view body);
    /// Replaces them. Empty when every byte of them is on the disk; else what failed, with the file and the system's reason, and
    /// every file is as it was.
    std::string replace();

private:
    struct File {
        std::string path; // as it is named
        std::string_view head;
        std::string_view body;
        std::string target; // behind symbolic links
        std::string created;
        std::string kept; // a copy of the old file
        bool had_old = false;
        bool is_replaced = false;
    };

    std::string prepare(File& file);
    std::string keep_old(File& file);
    std::string write_in_place(File& file);
    bool put_in_place(File& file);
    bool restore() noexcept;

    std::vector<File> files_;
    bool is_out_of_memory_ = false;
};

} // namespace bk_parser
