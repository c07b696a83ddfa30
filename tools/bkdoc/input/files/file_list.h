#pragma once

#include "output/output.h"

#include <optional>
#include <string>
#include <vector>

namespace bkdoc {

/// What is to be listed.
struct FileListOptions {
    std::vector<std::string> operands;     // files, folders, patterns, "-"
    std::optional<std::string> files_from; // a file with one operand a line; "-" is standard input
    bool is_nul_separated = false;         // its operands end with a NUL
    bool use_config = true;                // the extensions of a .bkdoc.bkd, where none are given here
    bool may_be_empty = false;             // whether a folder may be without documents
    std::vector<std::string> extensions;   // of the files of folders, without dots; else the content decides
};

/// A list of documents, sorted within each folder and pattern, each path once, and why some could not be listed, one
/// line each.
struct FileList {
    std::vector<std::string> files;
    std::vector<std::string> faults;
};

/// Lists the documents that operands name. A folder stands for the documents in it and below it. Without extensions those
/// are the files that a mark or a version line shows to be documents, and those whose names end in .bkd. Names that begin
/// with a dot are left out, and links to folders are not followed. A pattern (input/glob.h) that is no file's name stands for
/// the files that fit. A folder without documents is a fault, as a pattern without files is.
FileList list_files(const FileListOptions& options);

} // namespace bkdoc
