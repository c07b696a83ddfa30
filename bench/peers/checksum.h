#pragma once

#include <cstdint>
#include <cstring>
#include <string_view>

namespace bench {

/// A checksum of a typed walk that does not depend on the order. Documents with the same content have the same checksum.
struct Checksum {
    std::uint64_t leaves = 0;
    std::uint64_t exact = 0; // flags, integers and strings
    std::uint64_t bits = 0;  // of the decimals
    double sum = 0.0;        // of the decimals

    void flag(bool value) {
        ++leaves;
        exact += value ? 3 : 1;
    }
    void integer(std::int64_t value) {
        ++leaves;
        exact += static_cast<std::uint64_t>(value) << 8;
    }
    void decimal(double value) {
        ++leaves;
        std::uint64_t pattern = 0;
        std::memcpy(&pattern, &value, sizeof(pattern));
        bits += pattern;
        sum += value;
    }
    void string(std::string_view text) {
        ++leaves;
        exact += (static_cast<std::uint64_t>(text.size()) << 20) +
                 (text.empty() ? 0 : static_cast<unsigned char>(text.front()));
    }
};

} // namespace bench
