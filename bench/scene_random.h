#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace bench {

/// Splitmix64: the same numbers for the same seed everywhere, which the standard's distributions do not promise.
class SceneRandom {
public:
    explicit SceneRandom(std::uint64_t seed) : state_(seed) {}

    /// A number from 0 up to but not including `bound`.
    unsigned int below(unsigned int bound) { return static_cast<unsigned int>(next() % bound); }
    int between(int low, int high) {
        return low + static_cast<int>(below(static_cast<unsigned int>(high - low) + 1));
    }
    bool one_in(unsigned int count) { return below(count) == 0; }

    template <std::size_t N>
    std::string_view pick(const std::string_view (&choices)[N]) {
        return choices[below(static_cast<unsigned int>(N))];
    }

    /// A decimal number of a magnitude below `whole`, with one to six places.
    std::string decimal(unsigned int whole, bool is_signed) {
        std::string text = is_signed && one_in(2) ? "-" : "";
        text += std::to_string(below(whole));
        text += '.';
        const unsigned int places = 1 + below(6);
        for (unsigned int i = 0; i < places; ++i) {
            text += static_cast<char>('0' + below(10));
        }
        return text;
    }

private:
    std::uint64_t next() {
        std::uint64_t z = state_ += 0x9E3779B97F4A7C15u;
        z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9u;
        z = (z ^ (z >> 27)) * 0x94D049BB133111EBu;
        return z ^ (z >> 31);
    }

    std::uint64_t state_;
};

} // namespace bench
