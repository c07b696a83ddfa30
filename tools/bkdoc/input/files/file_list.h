#pragma once

#include "output/output.h"

#include <optional>
#include <string>
#include <vector>

namespace bkdoc {

/// What to list.
struct FileListOptions {
    std::vector<std::string> operands;     // files, folders, patterns, "-"
    std::optional<std::string> files_from; // a file with one operand per line; "-" is standard input
    bool is_nul_separated = false;         // its operands are separated by NUL
    bool use_config = true;                // without `extensions`, use those of the .bkdoc.bkd
    bool may_be_empty = false;             // accept a folder without documents
    /// Which files of a folder to list, without dots. When empty, the content decides.
    std::vector<std::string> extensions;
};

/// Documents, sorted within each folder and pattern, each path once; and for each operand that could not be listed the reason
/// in one line.
struct FileList {
    std::vector<std::string> files;
    std::vector<std::string> faults;
    std::vector<std::string> unread_folders; // whose documents are not among the files
};

/// Lists the documents that operands name. A folder means the documents in it and below it. Without extensions, these are the
/// files with the mark of a form or a version line, and the files ending in .bkd. Hidden files (with a leading dot) are
/// skipped, and links to folders are not followed. A link that leads nowhere is listed when its name is that of a document. A folder
/// that cannot be read is an error, and the others are listed. A pattern (input/files/glob.h) means the files that match, unless a file has
/// that very name. A folder without documents is an error, and so is a pattern without files.
FileList list_files(const FileListOptions& options);

} // namespace bkdoc
