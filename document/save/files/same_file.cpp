#include "document/save/files/same_file_impl.h"

#include "document/sources/path_text_impl.h"

#include <algorithm>
#include <system_error>

namespace bk_parser {

std::string real_path(const std::string& path) {
    std::error_code failure;
    const std::filesystem::path real = std::filesystem::weakly_canonical(path_of_text(path), failure);
    return failure ? path : path_text(real);
}

bool is_own_file(const DocumentState& state, const std::string& path) {
    return !state.absolute.empty() && real_path(path) == real_path(path_text(state.absolute));
}

bool is_included_file(const DocumentState& state, const std::string& path) {
    const std::string real = real_path(path);
    return std::any_of(
        state.dependencies.begin(), state.dependencies.end(),
        [&real](const std::filesystem::path& file) { return real_path(path_text(file)) == real; });
}

} // namespace bk_parser
