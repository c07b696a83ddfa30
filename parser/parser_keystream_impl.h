#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace bk {

/// The outputs of the MT19937 generator (Matsumoto and Nishimura, 1998), one after the other, combined with the
/// little-endian 32-bit words of a text. Its state is made anew a whole round at a time.
class Keystream {
public:
    explicit Keystream(std::uint32_t seed) noexcept;

    /// Combine the next `count` outputs with as many words; `in` and `out` may be the same.
    void add_to(const unsigned char* in, unsigned char* out, std::size_t count) noexcept;
    void subtract_from(const unsigned char* in, unsigned char* out, std::size_t count) noexcept;

private:
    static constexpr std::size_t state_size = 624;

    template <class Combine>
    void combine(const unsigned char* in, unsigned char* out, std::size_t count,
                 Combine combine_words) noexcept;
    void make_round() noexcept;

    std::array<std::uint32_t, state_size> state_;
    std::size_t used_ = state_size; // words of the round
};

} // namespace bk
