#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace bk_parser {

/// Paths are std::filesystem::path outside, and UTF-8 inside, on every platform.
inline std::string path_text(const std::filesystem::path& path) {
    const std::u8string text = path.u8string();
    return {reinterpret_cast<const char*>(text.data()), text.size()};
}

inline std::filesystem::path path_of_text(std::string_view text) {
    return std::filesystem::path(std::u8string(text.begin(), text.end()));
}

} // namespace bk_parser
