#pragma once

#include <filesystem>
#include <string>
#include <string_view>

/// Converts UTF-8 to the wide characters that system calls of Windows take.
inline std::wstring to_wide(std::string_view text) {
    return std::filesystem::path(std::u8string(text.begin(), text.end())).wstring();
}
