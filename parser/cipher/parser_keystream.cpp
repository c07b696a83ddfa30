#include "parser/cipher/parser_keystream_impl.h"

#include "core/text/core_avx2_impl.h"
#include "core/text/core_bytes_impl.h"

#include <algorithm>

/// Every loop here is simple and free of branches, so that compilers vectorise it. The loops are compiled twice: for SSE2, which
/// every x86-64 has, and for AVX2.
namespace bk {

namespace {

constexpr std::size_t middle = 397;
constexpr std::uint32_t upper_mask = 0x80000000u;
constexpr std::uint32_t lower_mask = 0x7FFFFFFFu;
constexpr std::uint32_t twist_matrix = 0x9908B0DFu;

constexpr std::uint32_t twist(std::uint32_t word, std::uint32_t next, std::uint32_t distant) noexcept {
    const std::uint32_t mixed = (word & upper_mask) | (next & lower_mask);
    return distant ^ (mixed >> 1) ^ ((0u - (next & 1u)) & twist_matrix);
}

constexpr std::uint32_t temper(std::uint32_t word) noexcept {
    word ^= word >> 11;
    word ^= (word << 7) & 0x9D2C5680u;
    word ^= (word << 15) & 0xEFC60000u;
    return word ^ (word >> 18);
}

/// Three parts instead of an index that wraps: first the distant word is still one of the old round, then one of the new round, and
/// the neighbour of the last word is the first word of the new round.
BK_ALWAYS_INLINE void make_round(std::uint32_t* state) {
    constexpr std::size_t size = Keystream::state_size;
    constexpr std::size_t ahead = size - middle;
    for (std::size_t i = 0; i < ahead; ++i) {
        state[i] = twist(state[i], state[i + 1], state[i + middle]);
    }
    for (std::size_t i = ahead; i < size - 1; ++i) {
        state[i] = twist(state[i], state[i + 1], state[i - ahead]);
    }
    state[size - 1] = twist(state[size - 1], state[0], state[middle - 1]);
}

BK_ALWAYS_INLINE void add(const std::uint32_t* state, const unsigned char* in, unsigned char* out,
                          std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        store_le32(out + 4 * i, load_le32(in + 4 * i) + temper(state[i]));
    }
}

BK_ALWAYS_INLINE void subtract(const std::uint32_t* state, const unsigned char* in, unsigned char* out,
                               std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        store_le32(out + 4 * i, load_le32(in + 4 * i) - temper(state[i]));
    }
}

#if defined(BK_USE_AVX2)

[[gnu::target("avx2")]] void make_round_avx2(std::uint32_t* state) {
    make_round(state);
}

[[gnu::target("avx2")]] void add_avx2(const std::uint32_t* state, const unsigned char* in, unsigned char* out,
                                      std::size_t count) {
    add(state, in, out, count);
}

[[gnu::target("avx2")]] void subtract_avx2(const std::uint32_t* state, const unsigned char* in,
                                           unsigned char* out, std::size_t count) {
    subtract(state, in, out, count);
}

constexpr KeystreamLoops avx2_loops = {make_round_avx2, add_avx2, subtract_avx2};

#endif

} // namespace

constinit const KeystreamLoops base_keystream_loops = {make_round, add, subtract};

const KeystreamLoops& fastest_keystream_loops() noexcept {
#if defined(BK_USE_AVX2)
    static const KeystreamLoops& chosen = has_avx2() ? avx2_loops : base_keystream_loops;
    return chosen;
#else
    return base_keystream_loops;
#endif
}

Keystream::Keystream(std::uint32_t seed, const KeystreamLoops& loops) noexcept : loops_(loops) {
    state_[0] = seed;
    for (std::uint32_t i = 1; i < state_size; ++i) {
        const std::uint32_t previous = state_[i - 1];
        state_[i] = 1812433253u * (previous ^ (previous >> 30)) + i;
    }
}

void Keystream::combine(KeystreamLoops::Combine combine_words, const unsigned char* in, unsigned char* out,
                        std::size_t count) noexcept {
    while (count != 0) {
        if (used_ == state_size) {
            loops_.make_round(state_.data());
            used_ = 0;
        }
        const std::size_t run = std::min(count, state_size - used_);
        combine_words(state_.data() + used_, in, out, run);
        used_ += run;
        in += 4 * run;
        out += 4 * run;
        count -= run;
    }
}

} // namespace bk
