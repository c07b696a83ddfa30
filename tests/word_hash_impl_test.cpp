#include "parser/archive/parser_word_hash_impl.h"

#include <gtest/gtest.h>

#include <array>
#include <set>
#include <string>

namespace {

using State = std::array<std::uint64_t, 4>;

std::uint64_t turned(std::uint64_t number, unsigned int by) {
    return number << by | number >> (64 - by);
}

/// One round as in the description by the authors: two halves, after which the words cross over.
void round(State& v) {
    v[0] += v[1];
    v[2] += v[3];
    v[1] = turned(v[1], 13);
    v[3] = turned(v[3], 16);
    v[1] ^= v[0];
    v[3] ^= v[2];
    v[0] = turned(v[0], 32);
    v[2] += v[1];
    v[0] += v[3];
    v[1] = turned(v[1], 17);
    v[3] = turned(v[3], 21);
    v[1] ^= v[2];
    v[3] ^= v[0];
    v[2] = turned(v[2], 32);
}

std::uint64_t siphash(std::string text, std::uint64_t key_low, std::uint64_t key_high) {
    State v = {key_low ^ 0x736f6d6570736575u, key_high ^ 0x646f72616e646f6du, key_low ^ 0x6c7967656e657261u,
               key_high ^ 0x7465646279746573u};
    const auto size = static_cast<char>(static_cast<unsigned char>(text.size() % 256));
    while (text.size() % 8 != 7) {
        text += '\0';
    }
    text += size;
    for (std::size_t at = 0; at < text.size(); at += 8) {
        std::uint64_t block = 0;
        for (std::size_t i = 8; i-- > 0;) {
            block = block * 256 + static_cast<unsigned char>(text[at + i]);
        }
        v[3] ^= block;
        round(v);
        round(v);
        v[0] ^= block;
    }
    v[2] ^= 255;
    for (int i = 0; i < 4; ++i) {
        round(v);
    }
    return v[0] ^ v[1] ^ v[2] ^ v[3];
}

/// The first 128 bits of the fraction of pi.
constexpr std::uint64_t key_low = 0x243f6a8885a308d3u;
constexpr std::uint64_t key_high = 0x13198a2e03707344u;

} // namespace

TEST(word_hash, the_reference_gives_what_its_authors_print) {
    std::string text;
    for (char byte = 0; byte < 15; ++byte) {
        text += byte;
    }
    EXPECT_EQ(siphash(text, 0x0706050403020100u, 0x0f0e0d0c0b0a0908u), 0xa129ca6149be45e5u);
}

TEST(word_hash, words_of_every_length_hash_as_the_reference_says) {
    std::string word;
    for (int length = 0; length < 600; ++length) {
        ASSERT_EQ(bk::WordHash::of(word), siphash(word, key_low, key_high)) << length;
        word += static_cast<char>(static_cast<unsigned char>(length * 37 + 200));
    }
}

TEST(word_hash, words_that_the_plain_hash_takes_for_one_differ) {
    std::set<std::uint64_t> hashes;
    for (std::size_t length = 0; length < 100; ++length) {
        hashes.insert(bk::WordHash::of(std::string(length, '\0'))); // 0 for each in a hash without a key
    }
    EXPECT_EQ(hashes.size(), 100u);
}
