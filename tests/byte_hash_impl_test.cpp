#include "document/sources/byte_hash_impl.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

using bk_parser::ByteHash;

namespace {

std::string some_bytes(std::size_t size) {
    std::string bytes;
    unsigned int state = 7;
    for (std::size_t i = 0; i < size; ++i) {
        state = state * 1664525u + 1013904223u;
        bytes += static_cast<char>(state >> 24);
    }
    return bytes;
}

} // namespace

TEST(byte_hash, does_not_depend_on_how_the_bytes_are_cut) {
    const std::string bytes = some_bytes(200);
    for (std::size_t first = 0; first <= bytes.size(); ++first) {
        for (std::size_t second = first; second <= bytes.size(); second += 7) {
            ByteHash hash;
            hash.add(std::string_view(bytes).substr(0, first));
            hash.add(std::string_view(bytes).substr(first, second - first));
            hash.add(std::string_view(bytes).substr(second));
            ASSERT_EQ(hash.finish(), ByteHash::of(bytes)) << first << " " << second;
        }
    }
}

TEST(byte_hash, differs_when_any_bit_differs_and_for_every_length) {
    const std::string bytes = some_bytes(150);
    std::set<std::uint64_t> seen{ByteHash::of(bytes)};
    for (std::size_t bit = 0; bit < 8 * bytes.size(); ++bit) {
        std::string flipped = bytes;
        flipped[bit / 8] = static_cast<char>(flipped[bit / 8] ^ (1 << bit % 8));
        EXPECT_TRUE(seen.insert(ByteHash::of(flipped)).second) << bit;
    }
    for (std::size_t size = 0; size < bytes.size(); ++size) {
        EXPECT_TRUE(seen.insert(ByteHash::of(std::string_view(bytes).substr(0, size))).second) << size;
        EXPECT_TRUE(seen.insert(ByteHash::of(std::string(size + 1, '\0'))).second) << size;
    }
}
