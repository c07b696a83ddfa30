#pragma once

#include <filesystem>
#include <string>
#include <string_view>

/// A text in UTF-8 as the wide calls of Windows take it.
inline std::wstring to_wide(std::string_view text) {
    return std::filesystem::path(std::u8string(text.begin(), text.end())).wstring();
}
