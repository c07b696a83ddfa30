#pragma once

#include "core/text/core_eight_impl.h"
#include "core/text/core_vectors_impl.h"

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>

/// Reads eight or sixteen characters of a number at a time, without a loop: the exit of a loop over the digits mispredicts.
/// (Lemire, "Number Parsing at a Gigabyte per Second", Software: Practice and Experience 51, 2021.)
namespace bk {

inline constexpr std::size_t most_short_digits = 8;
inline constexpr std::size_t most_pointed_digits = 16; // the point counted, if there is one

/// The digits of a text from which a point was taken out.
struct PointedDigits {
    std::uint64_t number = 0;
    int places = 0; // after the point, -1 when there is none
};

/// Reads eight decimal digits, the first of which is in the lowest byte. Returns false when another character is among them.
constexpr bool read_eight_digits(std::uint64_t digits, std::uint32_t& number) noexcept {
    constexpr std::uint64_t high_halves = eight_of('\xF0');
    const std::uint64_t is_above_nine = ((digits + eight_of('\x06')) & high_halves) >> 4;
    if (((digits & high_halves) | is_above_nine) != eight_of('\x33')) {
        return false;
    }
    // Two digits make a number below 100, two of those one below 10,000, and two of those the whole.
    digits = (digits & eight_of('\x0F')) * (10 * 0x100 + 1) >> 8;
    digits = (digits & 0x00FF00FF00FF00FFu) * (100 * 0x10000 + 1) >> 16;
    digits = (digits & 0x0000FFFF0000FFFFu) * (10000 * 0x100000000u + 1) >> 32;
    number = static_cast<std::uint32_t>(digits);
    return true;
}

/// Sixteen bytes of 0x00, then sixteen of 0xFF. A window of sixteen bytes that begins at byte n therefore has 0xFF in its last n bytes.
alignas(32) inline constexpr std::array<unsigned char, 32> byte_windows = [] {
    std::array<unsigned char, 32> windows{};
    for (std::size_t i = 16; i < windows.size(); ++i) {
        windows[i] = 0xFF;
    }
    return windows;
}();

/// The eight characters before `end`, with '0' in place of all but the last `count`.
inline std::uint64_t eight_before(const char* end, std::size_t count) noexcept {
    const std::uint64_t kept = load_le64(byte_windows.data() + most_short_digits + count);
    return (load_eight(end - most_short_digits) & kept) | (eight_of('0') & ~kept);
}

namespace portable {

/// The top bit of the first byte that is a point; 0 when none is.
constexpr std::uint64_t first_point(std::uint64_t characters) noexcept {
    const std::uint64_t points = find_in_eight(characters, '.');
    return points & -points;
}

/// Removes the point: moves the characters before it, `in_front` among them, one place towards it.
constexpr std::uint64_t without_point(std::uint64_t characters, std::uint64_t point,
                                      std::uint64_t in_front) noexcept {
    const std::uint64_t before = (point >> 7) - 1;
    return (characters & ~(before << 8 | 0xFF)) | (characters & before) << 8 | in_front;
}

/// Reads the number, which may have a point, in the last `count` of the sixteen characters before `end`. Returns false when another
/// character is among them.
inline bool read_pointed_digits(const char* end, std::size_t count, PointedDigits& digits) noexcept {
    const std::size_t in_front = count > most_short_digits ? count - most_short_digits : 0;
    std::uint64_t front = eight_before(end - most_short_digits, in_front);
    std::uint64_t back = eight_before(end, count - in_front);
    digits.places = -1;
    if (const std::uint64_t point = first_point(back); point != 0) {
        digits.places = std::countl_zero(point) / 8;
        back = without_point(back, point, front >> 56);
        front = front << 8 | '0';
    } else if (const std::uint64_t earlier = first_point(front); earlier != 0) {
        digits.places = static_cast<int>(most_short_digits) + std::countl_zero(earlier) / 8;
        front = without_point(front, earlier, '0');
    }
    std::uint32_t high = 0;
    std::uint32_t low = 0;
    if (!read_eight_digits(front, high) || !read_eight_digits(back, low)) {
        return false;
    }
    digits.number = high * std::uint64_t{100000000} + low;
    return true;
}

} // namespace portable

#if defined(BK_HAS_VECTORS)

namespace vector {

inline __m128i load_window(std::size_t at) noexcept {
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(byte_windows.data() + at));
}

inline bool read_pointed_digits(const char* end, std::size_t count, PointedDigits& digits) noexcept {
    const __m128i all = _mm_loadu_si128(reinterpret_cast<const __m128i*>(end - most_pointed_digits));
    __m128i values = _mm_and_si128(_mm_sub_epi8(all, _mm_set1_epi8('0')), load_window(count));
    const __m128i points = _mm_cmpeq_epi8(values, _mm_set1_epi8('.' - '0'));
    digits.places = -1;
    if (const auto found = static_cast<unsigned int>(_mm_movemask_epi8(points)); found != 0) {
        const auto places = static_cast<unsigned int>(15 - std::countr_zero(found));
        const __m128i behind = load_window(places);
        values =
            _mm_or_si128(_mm_and_si128(behind, values), _mm_andnot_si128(behind, _mm_slli_si128(values, 1)));
        digits.places = static_cast<int>(places);
    }
    const __m128i nine = _mm_set1_epi8(9);
    if (_mm_movemask_epi8(_mm_cmpeq_epi8(_mm_max_epu8(values, nine), nine)) != 0xFFFF) {
        return false;
    }
    // Two digits make a number below 100, two of those one below 10,000, and two of those one below 100,000,000.
    const __m128i twos =
        _mm_add_epi16(_mm_mullo_epi16(_mm_and_si128(values, _mm_set1_epi16(0xFF)), _mm_set1_epi16(10)),
                      _mm_srli_epi16(values, 8));
    const __m128i fours = _mm_madd_epi16(twos, _mm_set1_epi32(1 << 16 | 100));
    const __m128i eights = _mm_madd_epi16(_mm_packs_epi32(fours, fours), _mm_set1_epi32(1 << 16 | 10000));
    const auto both = static_cast<std::uint64_t>(_mm_cvtsi128_si64(eights));
    digits.number = (both & 0xFFFFFFFFu) * 100000000 + (both >> 32);
    return true;
}

} // namespace vector

#endif

#if defined(BK_USE_VECTORS)
using vector::read_pointed_digits;
#else
using portable::read_pointed_digits;
#endif

} // namespace bk
