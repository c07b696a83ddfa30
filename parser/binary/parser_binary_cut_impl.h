#pragma once

#include "core/text/core_bytes_impl.h"
#include "core/text/core_eight_impl.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace bk {

/// Where the first NUL stands. Names are short, and a call costs more than they do: of the first bytes eight are
/// looked at together.
inline std::size_t find_nul(std::string_view text) noexcept {
    constexpr std::size_t step = 8;
    for (std::size_t i = 0; i < 2 * step && text.size() - i >= step; i += step) {
        if (const std::uint64_t found = find_in_eight(load_eight(text.data() + i), '\0')) {
            return i + before_first(found);
        }
    }
    return text.find('\0');
}

/// The characters up to a NUL, which is passed. False when there is none: the cursor is at the end then.
bool cut_string(ByteCursor& cursor, std::string_view& text) noexcept;

/// Takes a number of bytes and then these bytes. Returns false when the buffer ends before; the cursor is then at the end.
bool cut_binary_data(ByteCursor& cursor, std::string_view& bytes) noexcept;

/// The same for readers that log: when something is missing, they log a warning and return nothing.
std::string_view take_string(ByteCursor& cursor);
std::string_view take_binary_data(ByteCursor& cursor);

} // namespace bk
