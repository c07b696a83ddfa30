#include "verbs/diff/folder_pairs.h"

#include "platform/paths.h"

#include <set>

namespace bkdoc {

namespace {

/// The paths of a folder's documents, relative to the folder.
void add_names(const std::string& folder, FileListOptions& options, std::set<std::string>& names,
               std::vector<std::string>& faults) {
    options.operands = {folder};
    FileList list = list_files(options);
    for (const std::string& file : list.files) {
        names.insert(slashed(path_of(file).lexically_relative(path_of(folder))));
    }
    faults.insert(faults.end(), list.faults.begin(), list.faults.end());
}

std::string file_in(const std::string& folder, const std::string& name) {
    const std::filesystem::path path = folder == "." ? path_of(name) : path_of(folder) / path_of(name);
    std::error_code failure;
    return std::filesystem::exists(path, failure) ? slashed(path) : std::string();
}

} // namespace

FolderPairs pair_folders(const std::string& before, const std::string& after, FileListOptions options) {
    options.may_be_empty = true;
    FolderPairs result;
    std::set<std::string> names;
    add_names(before, options, names, result.faults);
    add_names(after, options, names, result.faults);
    for (const std::string& name : names) {
        result.pairs.push_back({name, file_in(before, name), file_in(after, name)});
    }
    if (names.empty() && result.faults.empty()) {
        result.faults.push_back("no document in " + before + " and " + after);
    }
    return result;
}

} // namespace bkdoc
