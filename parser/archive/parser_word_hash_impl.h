#pragma once

#include "core/text/core_bytes_impl.h"

#include <bit>
#include <cstdint>
#include <string_view>

namespace bk {

/// SipHash-2-4 (Aumasson and Bernstein, 2012) with a fixed key. It is slower than the Jenkins hash, but there is no known way to make many
/// words with one hash. It is used only where Jenkins hashes collide.
class WordHash {
public:
    static std::uint64_t of(std::string_view word) noexcept {
        WordHash hash;
        const auto* bytes = reinterpret_cast<const unsigned char*>(word.data());
        std::size_t left = word.size();
        for (; left >= block_size; bytes += block_size, left -= block_size) {
            hash.take(load_le64(bytes));
        }
        hash.take(load_le(bytes, left) | std::uint64_t{word.size() & 0xFF} << 56);
        return hash.finish();
    }

private:
    static constexpr std::size_t block_size = sizeof(std::uint64_t);
    static constexpr std::uint64_t key_low = 0x243F6A8885A308D3u; // digits of pi
    static constexpr std::uint64_t key_high = 0x13198A2E03707344u;

    void take(std::uint64_t block) noexcept {
        d_ ^= block;
        mix();
        mix();
        a_ ^= block;
    }
    std::uint64_t finish() noexcept {
        c_ ^= 0xFF;
        for (int i = 0; i < 4; ++i) {
            mix();
        }
        return a_ ^ b_ ^ c_ ^ d_;
    }
    void mix() noexcept {
        a_ += b_;
        b_ = std::rotl(b_, 13) ^ a_;
        a_ = std::rotl(a_, 32);
        c_ += d_;
        d_ = std::rotl(d_, 16) ^ c_;
        a_ += d_;
        d_ = std::rotl(d_, 21) ^ a_;
        c_ += b_;
        b_ = std::rotl(b_, 17) ^ c_;
        c_ = std::rotl(c_, 32);
    }

    std::uint64_t a_ = key_low ^ 0x736F6D6570736575u;
    std::uint64_t b_ = key_high ^ 0x646F72616E646F6Du;
    std::uint64_t c_ = key_low ^ 0x6C7967656E657261u;
    std::uint64_t d_ = key_high ^ 0x7465646279746573u;
};

} // namespace bk
