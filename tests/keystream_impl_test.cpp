#include "parser/cipher/parser_keystream_impl.h"
#include "tests/support/bytes.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

namespace {

using Bytes = std::vector<unsigned char>;

std::uint32_t word_at(const Bytes& bytes, std::size_t i) {
    std::uint32_t word = 0;
    for (std::size_t k = 4; k-- > 0;) {
        word = word * 256 + bytes[4 * i + k];
    }
    return word;
}

Bytes random_words(std::size_t count, std::uint32_t seed) {
    std::mt19937 random(seed);
    Bytes bytes(4 * count);
    for (unsigned char& byte : bytes) {
        byte = static_cast<unsigned char>(random());
    }
    return bytes;
}

/// Runs each test with the portable loops and with the fastest ones of this processor.
class keystream : public testing::TestWithParam<const bk::KeystreamLoops*> {
protected:
    static bk::Keystream stream(std::uint32_t seed) { return bk::Keystream(seed, *GetParam()); }

    /// The first outputs, which result from adding the keystream to zeros.
    static Bytes outputs(std::uint32_t seed, std::size_t count) {
        Bytes bytes(4 * count);
        stream(seed).add_to(bytes.data(), bytes.data(), count);
        return bytes;
    }
};

INSTANTIATE_TEST_SUITE_P(loops, keystream,
                         testing::Values(&bk::base_keystream_loops, &bk::fastest_keystream_loops()),
                         [](const auto& tested) { return tested.index == 0 ? "plain" : "fastest"; });

} // namespace

TEST_P(keystream, the_10000th_output_for_the_seed_5489_is_the_published_one) {
    EXPECT_EQ(word_at(outputs(5489, 10000), 9999), 4123659995u);
}

TEST_P(keystream, the_outputs_are_those_of_the_standard_generator) {
    std::vector<std::uint32_t> seeds = {0, 1, 2, 5489, 0x7FFFFFFF, 0x80000000, 0xFFFFFF80, 0xFFFFFFFF};
    std::mt19937 random(1);
    while (seeds.size() < 300) {
        seeds.push_back(static_cast<std::uint32_t>(random()));
    }
    for (const std::uint32_t seed : seeds) {
        const Bytes bytes = outputs(seed, 700);
        std::mt19937 standard(seed);
        for (std::size_t i = 0; i < 700; ++i) {
            ASSERT_EQ(word_at(bytes, i), standard()) << "output " << i << " of seed " << seed;
        }
    }
}

TEST_P(keystream, every_length_around_the_rounds_is_that_of_the_standard_generator) {
    for (const std::size_t around : {std::size_t{0}, std::size_t{227}, std::size_t{397}, std::size_t{624},
                                     std::size_t{1248}, std::size_t{6240}}) {
        for (std::size_t count = around < 3 ? 0 : around - 3; count <= around + 3; ++count) {
            Bytes bytes = outputs(77, count);
            bytes.resize(bytes.size() + 4); // so that `bytes` is not empty for a count of 0
            std::mt19937 standard(77);
            std::size_t i = 0;
            while (i < count && word_at(bytes, i) == standard()) {
                ++i;
            }
            EXPECT_EQ(i, count);
        }
    }
}

TEST_P(keystream, words_are_added_modulo_2_to_the_32) {
    const Bytes in = random_words(2000, 3);
    Bytes out(in.size());
    stream(9).add_to(in.data(), out.data(), 2000);
    std::mt19937 standard(9);
    for (std::size_t i = 0; i < 2000; ++i) {
        ASSERT_EQ(word_at(out, i), static_cast<std::uint32_t>(word_at(in, i) + standard())) << i;
    }
}

TEST_P(keystream, words_are_subtracted_modulo_2_to_the_32) {
    const Bytes in = random_words(2000, 4);
    Bytes out(in.size());
    stream(9).subtract_from(in.data(), out.data(), 2000);
    std::mt19937 standard(9);
    for (std::size_t i = 0; i < 2000; ++i) {
        ASSERT_EQ(word_at(out, i), static_cast<std::uint32_t>(word_at(in, i) - standard())) << i;
    }
}

TEST_P(keystream, subtracting_undoes_adding_in_place) {
    for (std::size_t count = 0; count < 1300; count += 13) {
        const Bytes before = random_words(count, 5);
        Bytes bytes = before;
        stream(10).add_to(bytes.data(), bytes.data(), count);
        EXPECT_EQ(bytes == before, count == 0);
        stream(10).subtract_from(bytes.data(), bytes.data(), count);
        EXPECT_TRUE(bytes == before) << count;
    }
}

TEST_P(keystream, a_stream_goes_on_where_the_last_call_ended) {
    const Bytes whole = outputs(11, 3000);
    std::mt19937 random(6);
    for (int round = 0; round < 50; ++round) {
        Bytes pieces(whole.size());
        bk::Keystream cipher = stream(11);
        std::size_t at = 0;
        while (at < 3000) {
            const std::size_t count = std::min<std::size_t>(random() % 700, 3000 - at);
            cipher.add_to(pieces.data() + 4 * at, pieces.data() + 4 * at, count);
            at += count;
        }
        EXPECT_TRUE(pieces == whole);
    }
}

TEST_P(keystream, adding_and_subtracting_take_from_the_same_stream) {
    Bytes bytes(8);
    bk::Keystream cipher = stream(12);
    cipher.add_to(bytes.data(), bytes.data(), 1);
    cipher.subtract_from(bytes.data() + 4, bytes.data() + 4, 1);
    std::mt19937 standard(12);
    EXPECT_EQ(word_at(bytes, 0), standard());
    EXPECT_EQ(word_at(bytes, 1), static_cast<std::uint32_t>(0 - standard()));
}

TEST_P(keystream, bytes_outside_the_words_are_not_touched) {
    Bytes bytes(4 * 10 + 2, 0xAA);
    const Bytes zeros(4 * 10);
    stream(13).add_to(zeros.data(), bytes.data() + 1, 10);
    EXPECT_EQ(bytes.front(), 0xAA);
    EXPECT_EQ(bytes.back(), 0xAA);
    EXPECT_EQ(Bytes(bytes.begin() + 1, bytes.end() - 1), outputs(13, 10)) << "wherever the words lie";
}
