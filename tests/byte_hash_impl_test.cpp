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

TEST(byte_hash, differs_when_parts_change_places) {
    const std::string bytes = some_bytes(1024);
    std::set<std::uint64_t> seen{ByteHash::of(bytes)};
    for (const std::size_t size : {1u, 4u, 8u, 32u, 64u, 124u, 128u, 256u}) {
        for (std::size_t at = 0; at + 2 * size <= bytes.size(); at += size) {
            std::string changed = bytes;
            changed.replace(at, 2 * size, bytes.substr(at + size, size) + bytes.substr(at, size));
            if (changed != bytes) {
                EXPECT_TRUE(seen.insert(ByteHash::of(changed)).second) << size << " at " << at;
            }
        }
    }
}

TEST(byte_hash, differs_when_two_bytes_change_in_the_same_way) {
    const std::string bytes(1024, ' ');
    std::set<std::uint64_t> seen{ByteHash::of(bytes)};
    for (std::size_t first = 0; first < 128; ++first) {
        for (std::size_t second = first + 1; second < bytes.size(); ++second) {
            std::string changed = bytes;
            changed[first] = '!';
            changed[second] = '!';
            ASSERT_TRUE(seen.insert(ByteHash::of(changed)).second) << first << " " << second;
        }
    }
}
