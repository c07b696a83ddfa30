#pragma once

#include "core/text/core_bytes_impl.h"

#include <bit>
#include <cstddef>
#include <cstdint>

/// Eight characters of a text in one 64-bit number, the first one in the lowest byte: what a processor without vector
/// instructions can compare in one step.
namespace bk {

/// A number with this character in each of its eight bytes.
constexpr std::uint64_t eight_of(char character) noexcept {
    return 0x0101010101010101u * static_cast<unsigned char>(character);
}

inline std::uint64_t load_eight(const char* text) noexcept {
    return load_le64(reinterpret_cast<const unsigned char*>(text));
}

/// Sets the top bit of each byte that equals the wanted character. Bits above the first such byte are unreliable. (Warren,
/// "Hacker's Delight", second edition 2012, section 6-1.)
constexpr std::uint64_t find_in_eight(std::uint64_t characters, char wanted) noexcept {
    const std::uint64_t others = characters ^ eight_of(wanted); // a wanted character becomes a zero byte
    return (others - eight_of('\x01')) & ~others & eight_of('\x80');
}

/// How many characters are before the first one that was found.
constexpr std::size_t before_first(std::uint64_t found) noexcept {
    return static_cast<std::size_t>(std::countr_zero(found)) / 8;
}

} // namespace bk
