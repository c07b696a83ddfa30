#include "core/numbers/core_number_impl.h"
#include "parser/words/parser_characters_impl.h"
#include "parser/words/parser_word_rules_impl.h"

#include "tests/support/number_reference.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <random>
#include <string>
#include <vector>

using namespace std::literals;

namespace {

TEST(core_number_scan, a_number_that_scanf_converts_is_one) {
    for (const char* text :
         {"0",   "-1.5", "1e",       "1e+",  "12ab", ".5",        "5.",  "0x1",  "0X1p",      "-0x.", "0x.8",
          "00x", "inf",  "INFINITY", "-inf", "info", "infinity!", "nan", "nan(", "nanometre", " 7"}) {
        EXPECT_TRUE(bk::is_scanned_double(text)) << text;
    }
}

TEST(core_number_scan, what_scanf_gives_up_half_way_is_no_number) {
    for (const char* text : {"", "-", ".", "e5", "0x", "-0X", "0xg", "0x-1", "0xp1", "infi", "-infi",
                             "INFInit", "infinitx", "in", "na", "x"}) {
        EXPECT_FALSE(bk::is_scanned_double(text)) << text;
    }
}

TEST(core_number_scan, conversion_still_takes_the_longest_prefix) {
    EXPECT_EQ(bk::text_to_double("0x").length, 1u);
    EXPECT_EQ(bk::text_to_double("infi").length, 3u);
}

#if defined(__GLIBC__)

// Uses the "C" locale, in which a test process starts.
bool is_converted(const std::string& text) {
    double value = 0.0;
    return std::sscanf(text.c_str(), "%lf", &value) == 1;
}

bool can_begin_a_number(const std::string& word) {
    const std::size_t digit = word.starts_with('-') ? 1 : 0;
    return word.size() > digit && bk::is_char(word[digit], bk::CHAR_DIGIT);
}

void expect_as_scanf(const std::string& text) {
    const bool is_double = is_converted(text);
    ASSERT_EQ(bk::is_scanned_double(text), is_double) << shown(text);
    ASSERT_EQ(bk::is_double_word(text), is_double) << shown(text);
    if (!can_begin_a_number(text)) {
        return;
    }
    unsigned int classes = 0;
    for (const char character : text) {
        classes |= bk::classes_of(character);
    }
    ASSERT_EQ(bk::classify_number(text, classes), bk::classify_value(text)) << shown(text);
}

void expect_all_as_scanf(const std::string& alphabet, std::size_t length) {
    std::vector<std::size_t> at(length, 0);
    for (std::size_t changed = 0; changed < length;) {
        std::string text(length, ' ');
        for (std::size_t i = 0; i < length; ++i) {
            text[i] = alphabet[at[i]];
        }
        expect_as_scanf(text);
        if (testing::Test::HasFatalFailure()) {
            return;
        }
        for (changed = 0; changed < length && ++at[changed] == alphabet.size(); ++changed) {
            at[changed] = 0;
        }
    }
}

TEST(core_number_scan, every_short_word_of_number_characters_is_a_double_when_scanf_converts_it) {
    for (std::size_t length = 1; length <= 5; ++length) {
        expect_all_as_scanf("01.eExXpP-+infaty(g", length);
    }
}

TEST(core_number_scan, every_word_about_infinity_is_a_double_when_scanf_converts_it) {
    for (std::size_t length = 1; length <= 6; ++length) {
        for (const char* start : {"inf", "-INF", "+inf", "iNfI", "infin", "0x", "-0x", "00x", "nan"}) {
            std::mt19937 random(static_cast<unsigned int>(length));
            for (int round = 0; round < 2000; ++round) {
                std::string text = start;
                while (text.size() < std::string(start).size() + length) {
                    text += "infty IT.0aeEpx_)"[random() % 17];
                }
                expect_as_scanf(text);
                if (HasFatalFailure()) {
                    return;
                }
            }
        }
    }
}

TEST(core_number_scan, random_words_are_doubles_when_scanf_converts_them) {
    const std::string alphabet = "00123456789..--++eExXpPinfatyNIFA_() \t\n\v\f\r\0"s;
    std::mt19937 random(2024);
    for (int round = 0; round < 500000; ++round) {
        std::string text(random() % 14, ' ');
        for (char& character : text) {
            character = alphabet[random() % alphabet.size()];
        }
        expect_as_scanf(text);
        if (HasFatalFailure()) {
            return;
        }
    }
}

#endif

} // namespace
