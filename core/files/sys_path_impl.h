#pragma once

#include <string>
#include <string_view>

/// The path syntaxes of Posix and Windows. Every platform has both, so that every platform tests both.
namespace bk {

enum class PathStyle { posix, windows };

#if defined(_WIN32)
inline constexpr PathStyle native_path_style = PathStyle::windows;
#else
inline constexpr PathStyle native_path_style = PathStyle::posix;
#endif

/// The characters that separate the steps of a path.
constexpr std::string_view path_separators(PathStyle style) {
    return style == PathStyle::windows ? "/\\" : "/";
}

/// The absolute form of `path`, taken from `current_folder` (itself absolute), without "." and ".." steps
/// and doubled separators. Works on the text alone. An empty path stays empty.
std::string full_path(std::string_view path, std::string_view current_folder, PathStyle style);

/// Removes each ".." step that follows a name, together with that name. Keeps everything else. Works on the text alone.
std::string without_steps_back(std::string_view path, PathStyle style);

/// Whether the path means the same in every folder.
bool is_absolute_path(std::string_view path, PathStyle style) noexcept;

/// The path up to its last separator, without it; a root stays whole. Empty when there is no separator.
std::string_view folder_of(std::string_view path, PathStyle style);

} // namespace bk
