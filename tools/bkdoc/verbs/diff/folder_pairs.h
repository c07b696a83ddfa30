#pragma once

#include "input/files/file_list.h"

#include <string>
#include <vector>

namespace bkdoc {

/// A document with the same path in two folders.
struct FolderPair {
    std::string name;   // its path in both folders, with slashes
    std::string before; // the file in the first folder; empty where it is not there
    std::string after;
};

struct FolderPairs {
    std::vector<FolderPair> pairs; // sorted by name
    std::vector<std::string> faults;
};

/// The documents of two folders and the folders below, matched by their paths. A file that is a document in one folder counts
/// as one in the other, too. Two folders without documents are an error. `options` says which files are documents.
FolderPairs pair_folders(const std::string& before, const std::string& after, FileListOptions options);

} // namespace bkdoc
