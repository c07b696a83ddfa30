#pragma once

#include "core/text/core_vectors_impl.h"
#include "parser/text/parser_known_entry_impl.h"

#include <bit>
#include <cstddef>
#include <cstdint>

/// Checks all numbers of a row at once with a few bit masks.
namespace bk_parser {

#if defined(BK_USE_VECTORS)
/// Which of 64 characters are digits and which are points, the first one's bit the lowest.
struct NumberCharacters {
    std::uint64_t digits = 0;
    std::uint64_t points = 0;

    /// Sixteen characters, the first of which is the one at `place`.
    void add(const char* text, unsigned int place) noexcept {
        const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text));
        const __m128i offsets = _mm_sub_epi8(bytes, _mm_set1_epi8('0'));
        const __m128i are_digits = _mm_cmpeq_epi8(_mm_min_epu8(offsets, _mm_set1_epi8(9)), offsets);
        const __m128i are_points = _mm_cmpeq_epi8(bytes, _mm_set1_epi8('.'));
        digits |= std::uint64_t{static_cast<std::uint32_t>(_mm_movemask_epi8(are_digits))} << place;
        points |= std::uint64_t{static_cast<std::uint32_t>(_mm_movemask_epi8(are_points))} << place;
    }
};
#endif

/// Whether ten digits in a row begin at one of `firsts`. Any nine digits fit into an int.
inline bool begins_with_ten_digits(std::uint64_t digits, std::uint64_t firsts) noexcept {
    const std::uint64_t two = digits & digits >> 1;
    const std::uint64_t four = two & two >> 2;
    const std::uint64_t eight = four & four >> 4;
    return eight != 0 && (eight & two >> 8 & firsts) != 0;
}

/// Whether each number is an optional '-' and digits with at most one point, and those without a point have at most nine. False
/// when that is not certain. `end` is the end of the text that the row is a part of.
inline bool are_plain_numbers([[maybe_unused]] const bk::KnownEntry::Numbers& row,
                              [[maybe_unused]] const char* end) noexcept {
#if defined(BK_USE_VECTORS)
    constexpr unsigned int width = 16;
    // Nearly all rows are short, so the branch is nearly always predicted.
    const bool is_short =
        row.ends >> (2 * width + 1) == 0; // the last blank is at most after the 32nd character
    if (end - row.begin < (is_short ? 32 : 64)) {
        return false;
    }
    NumberCharacters found;
    found.add(row.begin, 0);
    found.add(row.begin + width, width);
    if (!is_short) {
        found.add(row.begin + std::size_t{2} * width, 2 * width);
        found.add(row.begin + std::size_t{3} * width, 3 * width);
    }
    const std::uint64_t numbers = row.ends - row.starts; // the bits of each number
    const std::uint64_t others = numbers & ~found.digits;
    const std::uint64_t dashes = row.starts & others; // nothing else begins a number of a row
    const std::uint64_t points = others ^ dashes;
    if ((points & ~found.points) != 0) {
        return false;
    }
    // From each start a carry runs through the digits, up to the first point or the number's end.
    const std::uint64_t carried = (numbers ^ points) + row.starts;
    return (points & ~carried) == 0 && !begins_with_ten_digits(found.digits, row.starts + dashes);
#else
    return false;
#endif
}

} // namespace bk_parser
