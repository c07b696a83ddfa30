#pragma once

#include <cstddef>
#include <cstring>

namespace bk {

inline constexpr std::size_t copy_piece = 16;

/// Copies at most 16 bytes: in two pieces that may overlap.
inline void copy_short_text(char* out, const char* text, std::size_t size) noexcept {
    if (size >= 8) {
        std::memcpy(out, text, 8);
        std::memcpy(out + size - 8, text + size - 8, 8);
    } else if (size >= 4) {
        std::memcpy(out, text, 4);
        std::memcpy(out + size - 4, text + size - 4, 4);
    } else if (size != 0) {
        out[0] = text[0];
        out[size / 2] = text[size / 2];
        out[size - 1] = text[size - 1];
    }
}

/// Copies a text. Most words are shorter than 64 bytes, so they are copied inline.
inline void copy_text(char* out, const char* text, std::size_t size) noexcept {
    if (size <= copy_piece) {
        copy_short_text(out, text, size);
    } else if (size <= 4 * copy_piece) {
        for (std::size_t i = 0; i < size - copy_piece; i += copy_piece) {
            std::memcpy(out + i, text + i, copy_piece);
        }
        std::memcpy(out + size - copy_piece, text + size - copy_piece, copy_piece);
    } else {
        std::memcpy(out, text, size);
    }
}

} // namespace bk
