#pragma once

#include "core/text/core_bytes_impl.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace bk_parser {

/// A hash that shows whether a file has changed. It takes eight bytes at a time in sixteen lanes, so that a multiplication does not wait
/// for the one before. It multiplies numbers of 32 bits, as vectors do. It does not protect against somebody who searches for two files
/// with one hash.
class ByteHash {
public:
    /// Pieces may be of any size. The hash depends on the bytes, not on how they are cut.
    void add(std::string_view piece) noexcept;
    std::uint64_t finish() const noexcept;

    static std::uint64_t of(std::string_view bytes) noexcept {
        ByteHash hash;
        hash.add(bytes);
        return hash.finish();
    }

private:
    static constexpr std::size_t lane_count = 16;
    static constexpr std::size_t block_size = lane_count * sizeof(std::uint64_t);
    // Odd, with about as many ones as zeros.
    static constexpr std::uint64_t factor = 0x9E3779B97F4A7C15u;
    static constexpr std::uint64_t last_factor = 0xA4093822299F31D1u;

    /// Makes each bit depend on all bits.
    static std::uint64_t spread(std::uint64_t hash) noexcept {
        hash = (hash ^ hash >> 31) * factor;
        hash = (hash ^ hash >> 29) * last_factor;
        return hash ^ hash >> 32;
    }
    void add_blocks(const unsigned char* bytes, std::size_t count) noexcept;

    std::array<std::uint64_t, lane_count> lanes_{
        0x243F6A8885A308D3u, 0x13198A2E03707344u, 0xA4093822299F31D0u, 0x082EFA98EC4E6C89u,
        0x452821E638D01377u, 0xBE5466CF34E90C6Cu, 0xC0AC29B7C97C50DDu, 0x3F84D5B5B5470917u,
        0x9216D5D98979FB1Bu, 0xD1310BA698DFB5ACu, 0x2FFD72DBD01ADFB7u, 0xB8E1AFED6A267E96u,
        0xBA7C9045F12C7F99u, 0x24A19947B3916CF7u, 0x0801F2E2858EFC16u, 0x636920D871574E69u};
    std::array<unsigned char, block_size> rest_{}; // bytes that do not fill a block yet
    std::size_t rest_size_ = 0;
    std::uint64_t size_ = 0;
};

} // namespace bk_parser
