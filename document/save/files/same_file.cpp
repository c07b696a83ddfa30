#include "document/save/files/same_file_impl.h"

#include "document/sources/path_text_impl.h"

#include <algorithm>
#include <cstdint>
#include <system_error>
#include <unordered_map>

namespace bk_parser {

namespace {

bool has_hard_links(const std::string& path) {
    std::error_code failure;
    const std::uintmax_t count = std::filesystem::hard_link_count(path_of_text(path), failure);
    return !failure && count > 1;
}

bool are_hard_links(const std::string& one, const std::string& two) {
    std::error_code failure;
    return std::filesystem::equivalent(path_of_text(one), path_of_text(two), failure) && !failure;
}

} // namespace

std::string real_path(const std::string& path) {
    const std::filesystem::path given = path_of_text(path);
    std::error_code failure;
    std::filesystem::path real = std::filesystem::weakly_canonical(given, failure);
    if (failure) { // some standard libraries also fail here when memory runs out
        real = std::filesystem::weakly_canonical(given, failure);
    }
    return failure ? path : path_text(real);
}

bool is_own_file(const DocumentState& state, const std::string& path) {
    return !state.absolute.empty() && real_path(path) == real_path(path_text(state.absolute));
}

bool is_included_file(const DocumentState& state, const std::string& path) {
    const std::string real = real_path(path);
    const bool has_links = has_hard_links(path);
    return std::any_of(state.dependencies.begin(), state.dependencies.end(),
                       [&](const std::filesystem::path& file) {
                           const std::string name = path_text(file);
                           return real_path(name) == real || (has_links && are_hard_links(path, name));
                       });
}

FileNames::FileNames(const SourceMap& map) {
    const std::size_t count = map.get_files().size();
    std::unordered_map<std::string, std::size_t> by_real_path;
    std::vector<std::size_t> linked; // files with more than one hard link
    for (std::size_t file = 0; file < count; ++file) {
        const std::string& path = map.get_files()[file]->path;
        place_.push_back(count == 1 ? 0 : by_real_path.emplace(real_path(path), file).first->second);
        first_.push_back(place_.back() == file ? file : first_[place_.back()]);
        if (count != 1 && first_.back() == file && has_hard_links(path)) {
            const auto same = std::find_if(linked.begin(), linked.end(), [&](std::size_t other) {
                return map.get_files()[other]->text.get_text() == map.get_files()[file]->text.get_text() &&
                       are_hard_links(map.get_files()[other]->path, path);
            });
            first_.back() = same == linked.end() ? file : *same;
            linked.push_back(first_.back());
        }
        has_several_ = has_several_ || first_.back() != file;
    }
}

} // namespace bk_parser
