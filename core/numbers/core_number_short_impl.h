#pragma once

#include "core/numbers/core_number_digits_impl.h"
#include "core/text/core_bytes_impl.h"

#include <bit>
#include <charconv>
#include <cstddef>
#include <cstdint>

/// Writes the doubles that most documents have: with at most eight digits after the point, between 0.01 and ten million. Uses
/// integers only, so that neither the rounding mode nor a floating-point trap of the host matters.
namespace bk {

inline constexpr std::size_t short_double_capacity = 17; // a sign, seven digits, the point, eight digits

#if defined(__SIZEOF_INT128__)

/// The eight decimal digits of a number below 100,000,000 in eight bytes, the first one lowest.
constexpr std::uint64_t digits_of(std::uint32_t number) noexcept {
    // Splits the number into two halves of four digits, these into halves of two, and these into digits. Each step splits all
    // parts at once.
    std::uint64_t digits = number / 10000 | std::uint64_t{number % 10000} << 32;
    std::uint64_t upper = digits * 10486 >> 20 & 0x0000007F0000007Fu;
    digits = upper | (digits - 100 * upper) << 16;
    upper = digits * 103 >> 10 & 0x000F000F000F000Fu;
    return upper | (digits - 10 * upper) << 8;
}

/// Writes the shortest text that reads back to the same double, as std::to_chars does, with ".0" after a whole number. Returns its length.
/// For any other number, returns 0 and writes nothing.
inline std::size_t write_short_double(char* out, double number) noexcept {
    __extension__ using Wide = unsigned __int128;
    constexpr std::uint32_t scale = 100000000;
    constexpr int fraction_bits = 52;
    constexpr double smallest = 0.01; // below, an exponent may be shorter
    constexpr double largest = 1e7;
    constexpr std::uint32_t largest_whole = 99999; // above, an exponent may be shorter

    const auto bits = std::bit_cast<std::uint64_t>(number);
    const std::uint64_t magnitude = bits & ~(std::uint64_t{1} << 63); // doubles sort as their bits do
    if (magnitude < std::bit_cast<std::uint64_t>(smallest) ||
        magnitude >= std::bit_cast<std::uint64_t>(largest)) {
        return 0;
    }
    // The number is mantissa / 2^shift. Where it is the double that is nearest to scaled / 10^8, no other number of
    // eight digits after the point is that near: such numbers are further apart than doubles are.
    constexpr std::uint64_t hidden_bit = std::uint64_t{1} << fraction_bits;
    const std::uint64_t mantissa = (magnitude & (hidden_bit - 1)) | hidden_bit;
    const int shift = 1023 + fraction_bits - static_cast<int>(magnitude >> fraction_bits);
    const Wide exact = static_cast<Wide>(mantissa) * scale;
    const auto scaled = static_cast<std::uint64_t>((exact + (Wide{1} << (shift - 1))) >> shift);
    const Wide rounded = static_cast<Wide>(scaled) << shift;
    const Wide distance = rounded > exact ? rounded - exact : exact - rounded;
    // Just below a power of two, doubles are closer to each other. There the number must be exact.
    if (distance != 0 && (distance >= scale / 2 || mantissa == hidden_bit)) {
        return 0;
    }
    const auto whole = static_cast<std::uint32_t>(scaled / scale);
    const auto fraction = static_cast<std::uint32_t>(scaled % scale);
    if (fraction == 0 && whole > largest_whole) {
        return 0;
    }
    char* end = out;
    *end = '-';
    end += bits >> 63;
    end = std::to_chars(end, out + short_double_capacity, whole).ptr;
    const std::uint64_t digits = digits_of(fraction);
    *end++ = '.';
    store_le64(reinterpret_cast<unsigned char*>(end), digits | eight_of('0'));
    // Drops the zeros at the end, but keeps the first digit: `| 1` marks it as not zero.
    end += most_short_digits - static_cast<std::size_t>(std::countl_zero(digits | 1)) / 8;
    return static_cast<std::size_t>(end - out);
}

#else

inline std::size_t write_short_double(char*, double) noexcept {
    return 0;
}

#endif

} // namespace bk
