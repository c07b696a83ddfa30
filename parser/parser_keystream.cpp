#include "parser/parser_keystream_impl.h"

#include "core/core_bytes_impl.h"

#include <algorithm>

/// Every loop here is plain and free of branches, so that compilers turn it into vector code.
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

} // namespace

Keystream::Keystream(std::uint32_t seed) noexcept {
    state_[0] = seed;
    for (std::uint32_t i = 1; i < state_size; ++i) {
        const std::uint32_t previous = state_[i - 1];
        state_[i] = 1812433253u * (previous ^ (previous >> 30)) + i;
    }
}

/// The distant word lies ahead in the old round first, then behind in the new one, and the last word's
/// neighbour is the first of the new round: three loops without a wrapping index.
void Keystream::make_round() noexcept {
    std::uint32_t* const state = state_.data();
    constexpr std::size_t ahead = state_size - middle;
    for (std::size_t i = 0; i < ahead; ++i) {
        state[i] = twist(state[i], state[i + 1], state[i + middle]);
    }
    for (std::size_t i = ahead; i < state_size - 1; ++i) {
        state[i] = twist(state[i], state[i + 1], state[i - ahead]);
    }
    state[state_size - 1] = twist(state[state_size - 1], state[0], state[middle - 1]);
    used_ = 0;
}

template <class Combine>
void Keystream::combine(const unsigned char* in, unsigned char* out, std::size_t count,
                        Combine combine_words) noexcept {
    while (count != 0) {
        if (used_ == state_size) {
            make_round();
        }
        const std::size_t run = std::min(count, state_size - used_);
        const std::uint32_t* const state = state_.data() + used_;
        for (std::size_t i = 0; i < run; ++i) {
            store_le32(out + 4 * i, combine_words(load_le32(in + 4 * i), temper(state[i])));
        }
        used_ += run;
        in += 4 * run;
        out += 4 * run;
        count -= run;
    }
}

void Keystream::add_to(const unsigned char* in, unsigned char* out, std::size_t count) noexcept {
    combine(in, out, count, [](std::uint32_t word, std::uint32_t key) { return word + key; });
}

void Keystream::subtract_from(const unsigned char* in, unsigned char* out, std::size_t count) noexcept {
    combine(in, out, count, [](std::uint32_t word, std::uint32_t key) { return word - key; });
}

} // namespace bk
