#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>

/// Up to eight characters in a 64-bit number, the first one lowest, and what is read out of them without a loop: where
/// a loop over the digits of a number ends cannot be foreseen. (Lemire, "Number Parsing at a Gigabyte per Second",
/// Software: Practice and Experience 51, 2021.)
namespace bk {

inline constexpr std::size_t most_short_digits = 8;

/// The same character eight times.
constexpr std::uint64_t eight_of(char character) noexcept {
    return 0x0101010101010101u * static_cast<unsigned char>(character);
}

/// The number that eight decimal digits make; false when another character is among them.
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

/// Zeros in place of all but the last `count` of eight characters, from 1 to 8.
constexpr std::uint64_t with_zeros_in_front(std::uint64_t characters, std::size_t count) noexcept {
    const std::size_t others = 8 * (most_short_digits - count);
    const std::uint64_t kept = ~std::uint64_t{0} << others;
    return (characters & kept) | (eight_of('0') & ~kept);
}

/// The number that the first `count` characters make, from 1 to 8 of them.
constexpr bool read_short_digits(std::uint64_t characters, std::size_t count,
                                 std::uint32_t& number) noexcept {
    const std::uint64_t moved = characters << (8 * (most_short_digits - count));
    return read_eight_digits(with_zeros_in_front(moved, count), number);
}

/// The place of the first '.' among `count` characters, or `count`.
constexpr std::size_t find_point(std::uint64_t characters, std::size_t count) noexcept {
    const std::uint64_t others = characters ^ eight_of('.'); // a point has become zero
    const std::uint64_t zeros = (others - eight_of('\x01')) & ~others & eight_of('\x80');
    const auto place = static_cast<std::size_t>(std::countr_zero(zeros)) / 8;
    return place < count ? place : count;
}

/// Without the character at a place.
constexpr std::uint64_t without(std::uint64_t characters, std::size_t place) noexcept {
    const std::uint64_t before = (std::uint64_t{1} << (8 * place)) - 1;
    return (characters & before) | (characters >> 8 & ~before);
}

} // namespace bk
