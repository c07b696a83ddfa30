#include "verbs/diff/folder_pairs.h"

#include "input/files/input.h"
#include "output/display/text_display.h"
#include "platform/paths.h"

#include <algorithm>
#include <set>
#include <utility>

namespace bkdoc {

namespace {

/// Collects the documents of two folders.
struct Names {
    std::set<std::string> documents; // relative to their folder
    std::vector<std::string> unread; // folders that cannot be read, likewise
    std::vector<std::string> faults;

    void add(const std::string& folder, FileListOptions& options) {
        options.operands = {folder};
        FileList list = list_files(options);
        const auto relative = [&folder](const std::string& path) {
            return slashed(path_of(path).lexically_relative(path_of(folder)));
        };
        for (const std::string& file : list.files) {
            documents.insert(relative(file));
        }
        for (const std::string& closed : list.unread_folders) {
            unread.push_back(relative(closed));
        }
        faults.insert(faults.end(), list.faults.begin(), list.faults.end());
    }

    /// Whether one of the folders cannot be read where this document is.
    bool is_unknown(const std::string& document) const {
        return std::any_of(unread.begin(), unread.end(), [&document](const std::string& folder) {
            return folder == "." || document.starts_with(folder + "/");
        });
    }
};

/// A link that leads nowhere is there, too.
std::string file_in(const std::string& folder, const std::string& name) {
    const std::filesystem::path path = folder == "." ? path_of(name) : path_of(folder) / path_of(name);
    std::error_code failure;
    return std::filesystem::exists(std::filesystem::symlink_status(path, failure)) ? slashed(path)
                                                                                   : std::string();
}

} // namespace

FolderPairs pair_folders(const std::string& before, const std::string& after, FileListOptions options) {
    options.may_be_empty = true;
    FolderPairs result;
    Names names;
    names.add(before, options);
    names.add(after, options);
    for (const std::string& name : names.documents) {
        if (!names.is_unknown(name)) {
            result.pairs.push_back({name, file_in(before, name), file_in(after, name)});
        }
    }
    result.faults = std::move(names.faults);
    if (names.documents.empty() && result.faults.empty()) {
        result.faults.push_back("no document in " + before + " and " + after);
    }
    return result;
}

std::string folder_name(const std::string& operand) {
    const std::filesystem::path path = path_of(operand);
    return path.has_filename() || !path.has_relative_path() ? operand : text_of(path.parent_path());
}

OperandPair operand_pair(std::string_view verb, const std::string& first, const std::string& second,
                         Streams& streams) {
    std::error_code failure;
    const bool is_folder = std::filesystem::is_directory(path_of(first), failure);
    if (is_folder == std::filesystem::is_directory(path_of(second), failure)) {
        return is_folder ? OperandPair::folders : OperandPair::files;
    }
    const std::string& folder = is_folder ? first : second;
    const std::string& other = is_folder ? second : first;
    const bool is_there = other == "-" || std::filesystem::exists(path_of(other), failure);
    complain(streams, is_there ? shown(folder, file_name_limit) + " is a folder and " +
                                     shown(other, file_name_limit) + " is not; " + std::string(verb) +
                                     " compares two files or two folders"
                               : shown(other, file_name_limit) + ": " + why_unread(other));
    return OperandPair::refused;
}

} // namespace bkdoc
