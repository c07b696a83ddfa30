#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace bkdoc {

/// The tool keeps paths in UTF-8, and converts to std::filesystem::path at its borders, on every platform.
inline std::filesystem::path path_of(std::string_view text) {
    return std::filesystem::path(std::u8string(text.begin(), text.end()));
}

inline std::string text_of(const std::filesystem::path& path) {
    const std::u8string text = path.u8string();
    return {text.begin(), text.end()};
}

/// With slashes between the names, on every platform.
inline std::string slashed(const std::filesystem::path& path) {
    const std::u8string text = path.generic_u8string();
    return {text.begin(), text.end()};
}

/// Resolves all links of a path. Returns the path itself where no file is.
inline std::string real_file(const std::string& path) {
    std::error_code failure;
    const std::filesystem::path real = std::filesystem::canonical(path_of(path), failure);
    return failure ? path : text_of(real);
}

} // namespace bkdoc
