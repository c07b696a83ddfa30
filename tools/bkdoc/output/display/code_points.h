#pragma once

#include <algorithm>
#include <iterator>
#include <string_view>

/// Characters by their code points.
namespace bkdoc {

struct CodeRange {
    char32_t first;
    char32_t last;
};

template <std::size_t count>
bool is_in(const CodeRange (&ranges)[count], char32_t code) noexcept {
    return std::any_of(std::begin(ranges), std::end(ranges),
                       [code](const CodeRange& range) { return code >= range.first && code <= range.last; });
}

/// The code point of a well-formed character.
inline char32_t code_point(std::string_view character) noexcept {
    const auto lead = static_cast<unsigned char>(character.front());
    char32_t code = character.size() == 1 ? lead : lead & (0x7Fu >> character.size());
    for (const char byte : character.substr(1)) {
        code = code << 6 | (static_cast<unsigned char>(byte) & 0x3Fu);
    }
    return code;
}

} // namespace bkdoc
