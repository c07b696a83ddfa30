#pragma once

#include <cstddef>
#include <cstring>

namespace bk {

/// Copies a text. Words are short, and a call costs more than they do: up to 16 bytes are moved in two
/// pieces that may overlap.
inline void copy_text(char* out, const char* text, std::size_t size) noexcept {
    if (size > 16) {
        std::memcpy(out, text, size);
    } else if (size >= 8) {
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

} // namespace bk
