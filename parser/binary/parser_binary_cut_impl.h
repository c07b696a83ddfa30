#pragma once

#include "core/text/core_bytes_impl.h"
#include "core/text/core_eight_impl.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace bk {

/// The position of the first NUL. Most names are shorter than eight bytes, so it tests the first eight together instead of
/// calling memchr.
inline std::size_t find_nul(std::string_view text) noexcept {
    constexpr std::size_t step = 8;
    for (std::size_t i = 0; i < 2 * step && text.size() - i >= step; i += step) {
        if (const std::uint64_t found = find_in_eight(load_eight(text.data() + i), '\0')) {
            return i + before_first(found);
        }
    }
    return text.find('\0');
}

/// Takes the characters up to a NUL, and the NUL. Returns false when there is none; the cursor is then at the end.
bool cut_string(ByteCursor& cursor, std::string_view& text) noexcept;

/// Takes a number of bytes and then these bytes. Returns false when the buffer ends before; the cursor is then at the end.
bool cut_binary_data(ByteCursor& cursor, std::string_view& bytes) noexcept;

/// The same for readers that log: when something is missing, they log a warning and return nothing.
std::string_view take_string(ByteCursor& cursor);
std::string_view take_binary_data(ByteCursor& cursor);

} // namespace bk
