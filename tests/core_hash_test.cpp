#include "core/core_hash.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <string>
#include <utility>

using namespace std::literals;

namespace {

unsigned int hash(const std::string& bytes) {
    return CoreHash::generate_jenkins(bytes.data(), bytes.size());
}

/// A second implementation of the same steps, with 64-bit numbers reduced to 32 bits.
std::uint32_t reference(const std::string& bytes) {
    std::uint64_t h = 0;
    const auto cut = [](std::uint64_t value) { return value % 0x100000000u; };
    for (const char byte : bytes) {
        h = cut(h + static_cast<unsigned char>(byte));
        h = cut(h + h * 1024);
        h = h ^ (h / 64);
    }
    h = cut(h + h * 8);
    h = h ^ (h / 2048);
    h = cut(h + h * 32768);
    return static_cast<std::uint32_t>(h);
}

TEST(core_hash, known_texts_have_their_known_hashes) {
    std::string every_byte;
    for (int i = 0; i < 256; ++i) {
        every_byte += static_cast<char>(i);
    }
    const std::pair<std::string, unsigned int> cases[] = {
        {"", 0u},
        {"a", 0xCA2E9442u},
        {"abc", 0xED131F5Bu},
        {"The quick brown fox jumps over the lazy dog", 0x519E91F5u},
        {"EVT_ID_APPLICATION_IDLE", 0x1A94FB86u},
        {"EVT_ID_DESTROY", 0xDB043DA4u},
        {"a\0b"s, 0x5B21E716u},
        {every_byte, 0xEF2A46BDu}};
    for (const auto& [text, expected] : cases) {
        EXPECT_EQ(hash(text), expected) << text;
    }
}

TEST(core_hash, bytes_above_127_count_as_unsigned) {
    EXPECT_EQ(hash("\xFF"), 0xC7B20F1Du);
    EXPECT_EQ(hash("\x80\xFE"), 0xC7F8FF68u);
}

TEST(core_hash, exactly_the_given_number_of_bytes_is_hashed) {
    EXPECT_EQ(CoreHash::generate_jenkins("abcdef", 3), hash("abc"));
    EXPECT_EQ(CoreHash::generate_jenkins("abcdef", 0), 0u);
    EXPECT_EQ(CoreHash::generate_jenkins(nullptr, 0), 0u);
}

TEST(core_hash, random_bytes_hash_as_the_steps_say) {
    std::mt19937 random(11);
    for (int round = 0; round < 2000; ++round) {
        std::string bytes(random() % 64, '\0');
        for (char& byte : bytes) {
            byte = static_cast<char>(random() % 256);
        }
        ASSERT_EQ(hash(bytes), reference(bytes));
    }
}

TEST(core_hash, a_hash_is_known_at_compile_time) {
    constexpr unsigned int known = CoreHash::generate_jenkins("a", 1);
    EXPECT_EQ(known, hash("a"));
}

} // namespace
