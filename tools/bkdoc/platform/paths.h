#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>

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

/// The system's reason, in the middle of a sentence: "permission denied".
inline std::string system_reason(const std::error_code& error) {
    std::string reason = error.message();
    const bool is_word = reason.size() > 1 && reason[1] >= 'a' && reason[1] <= 'z';
    if (is_word && reason[0] >= 'A' && reason[0] <= 'Z') {
        reason[0] = static_cast<char>(reason[0] - 'A' + 'a');
    }
    return reason;
}

} // namespace bkdoc
