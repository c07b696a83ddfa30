#pragma once

#include <bit>
#include <cstdint>

namespace bk {

/// The number of ones. Where the processor may lack an instruction for it, g++ compiles std::popcount to a call, with which reading a
/// scene takes 1% more instructions.
inline unsigned int count_ones(std::uint64_t bits) noexcept {
#if defined(__GNUC__) && !defined(__clang__) && defined(__x86_64__) && !defined(__POPCNT__)
    bits -= bits >> 1 & 0x5555555555555555u;
    bits = (bits & 0x3333333333333333u) + (bits >> 2 & 0x3333333333333333u);
    bits = (bits + (bits >> 4)) & 0x0F0F0F0F0F0F0F0Fu;
    return static_cast<unsigned int>(bits * 0x0101010101010101u >> 56);
#else
    return static_cast<unsigned int>(std::popcount(bits));
#endif
}

} // namespace bk
