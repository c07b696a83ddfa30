#pragma once

#include "core/core_string.h"

/// Hashing of names and words.
class CoreHash {
public:
    /// Bob Jenkins' one-at-a-time hash of exactly `size` bytes (Dr. Dobb's Journal, September 1997).
    /// Usable at compile time. Linear in `size`.
    static constexpr unsigned int generate_jenkins(const char* data, const core_uint64& size) noexcept {
        unsigned int hash = 0;
        for (core_uint64 i = 0; i < size; ++i) {
            hash += static_cast<unsigned char>(data[i]);
            hash += hash << 10;
            hash ^= hash >> 6;
        }
        hash += hash << 3;
        hash ^= hash >> 11;
        hash += hash << 15;
        return hash;
    }
};
