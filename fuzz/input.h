#pragma once

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

/// The input from the fuzzer. Its first bytes choose how to use the rest.
class FuzzInput {
public:
    FuzzInput(const std::uint8_t* data, std::size_t size)
        : rest_(reinterpret_cast<const char*>(data), size) {}

    /// The next byte modulo the limit; 0 at the end.
    unsigned int choose(unsigned int limit) {
        if (rest_.empty()) {
            return 0;
        }
        const unsigned int byte = static_cast<unsigned char>(rest_.front());
        rest_.remove_prefix(1);
        return byte % limit;
    }

    std::string_view rest() const { return rest_; }

private:
    std::string_view rest_;
};

/// Aborts when a condition does not hold. The fuzzer then keeps the input.
inline void require(bool holds, std::string_view what, std::string_view detail = {}) {
    if (!holds) {
        std::fprintf(stderr, "does not hold: %.*s\n%.*s\n", static_cast<int>(what.size()), what.data(),
                     static_cast<int>(detail.size()), detail.data());
        std::abort();
    }
}

/// Aborts when a difference is not empty.
inline void require_none(const std::string& difference, std::string_view what) {
    require(difference.empty(), what, difference);
}
