#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace bk {

/// The loops over a keystream's state, compiled for one kind of processor.
struct KeystreamLoops {
    using Combine = void (*)(const std::uint32_t* state, const unsigned char* in, unsigned char* out,
                             std::size_t count);

    void (*make_round)(std::uint32_t* state);
    Combine add;
    Combine subtract;
};

/// For any processor, and the fastest ones for this one.
extern const KeystreamLoops base_keystream_loops;
const KeystreamLoops& fastest_keystream_loops() noexcept;

/// Combines the outputs of the MT19937 generator (Matsumoto and Nishimura, 1998), one after the other, with the little-endian 32-bit
/// words of a text. Computes its state a whole round at a time.
class Keystream {
public:
    static constexpr std::size_t state_size = 624;

    explicit Keystream(std::uint32_t seed, const KeystreamLoops& loops = fastest_keystream_loops()) noexcept;

    /// Combine the next `count` outputs with as many words; `in` and `out` may be the same.
    void add_to(const unsigned char* in, unsigned char* out, std::size_t count) noexcept {
        combine(loops_.add, in, out, count);
    }
    void subtract_from(const unsigned char* in, unsigned char* out, std::size_t count) noexcept {
        combine(loops_.subtract, in, out, count);
    }

private:
    void combine(KeystreamLoops::Combine combine_words, const unsigned char* in, unsigned char* out,
                 std::size_t count) noexcept;

    const KeystreamLoops& loops_;
    alignas(64) std::array<std::uint32_t, state_size> state_; // so that few vectors span two cache lines
    std::size_t used_ = state_size;                           // words of the round
};

} // namespace bk
