#pragma once

#include "core/text/core_bytes_impl.h"

#include <bit>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace bk {

/// Where the first NUL stands. Names are short, and a call costs more than they do: of the first bytes eight are
/// looked at together. The lowest bit set is the top bit of the first byte that is zero.
inline std::size_t find_nul(std::string_view text) noexcept {
    constexpr std::uint64_t ones = 0x0101010101010101u;
    const auto* const bytes = reinterpret_cast<const unsigned char*>(text.data());
    constexpr std::size_t step = sizeof(std::uint64_t);
    for (std::size_t i = 0; i < 2 * step && text.size() - i >= step; i += step) {
        const std::uint64_t eight = load_le64(bytes + i);
        if (const std::uint64_t zeros = (eight - ones) & ~eight & (ones << 7)) {
            return i + static_cast<std::size_t>(std::countr_zero(zeros)) / 8;
        }
    }
    return text.find('\0');
}

/// The characters up to a NUL, which is passed. False when there is none: the cursor is at the end then.
bool cut_string(ByteCursor& cursor, std::string_view& text) noexcept;

/// Bytes that follow their number. False when the buffer ends before they do: the cursor is at the end then.
bool cut_binary_data(ByteCursor& cursor, std::string_view& bytes) noexcept;

/// The same for readers that log: when something is missing, a warning and nothing.
std::string_view take_string(ByteCursor& cursor);
std::string_view take_binary_data(ByteCursor& cursor);

} // namespace bk
