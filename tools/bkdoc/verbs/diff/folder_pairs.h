#pragma once

#include "input/files/file_list.h"
#include "output/output.h"

#include <string>
#include <string_view>
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
/// as one in the other, too. Leaves out what one of the two folders may have in a folder that cannot be read. Two folders without documents are an error. `options` says which files are documents.
FolderPairs pair_folders(const std::string& before, const std::string& after, FileListOptions options);

/// The name of a folder in reports: without a separator at its end.
std::string folder_name(const std::string& operand);

/// What the two operands of a verb that compares are.
enum class OperandPair { files, folders, refused };
/// Says why when one is a folder and the other is not.
OperandPair operand_pair(std::string_view verb, const std::string& first, const std::string& second,
                         Streams& streams);

} // namespace bkdoc
