#include "core/numbers/core_number_impl.h"

#include "tests/support/number_reference.h"

#include <gtest/gtest.h>

#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <random>
#include <string>

using namespace std::literals;

namespace {

TEST(core_number, random_texts_of_number_characters_are_read_as_the_c_library_reads_them) {
    const std::string alphabet = "00123456789..--++eExXpPinfatyNIFA_() \t\n\v\f\r\0"s;
    std::mt19937 random(1999);
    for (int round = 0; round < 300000; ++round) {
        std::string text(random() % 14, ' ');
        for (char& character : text) {
            character = alphabet[random() % alphabet.size()];
        }
        expect_int_as_the_c_library(text);
        expect_double_as_the_c_library(text);
        if (HasFatalFailure()) {
            return;
        }
    }
}

TEST(core_number, random_decimal_numbers_are_rounded_as_the_c_library_rounds_them) {
    std::mt19937_64 random(2000);
    for (int round = 0; round < 100000; ++round) {
        std::string text = random() % 2 == 0 ? "-" : "";
        const std::size_t digits = 1 + random() % (random() % 10 == 0 ? 800 : 25);
        const std::size_t point = random() % (digits + 1);
        for (std::size_t i = 0; i < digits; ++i) {
            text += i == point ? "." : "";
            text += static_cast<char>('0' + random() % 10);
        }
        if (random() % 2 == 0) {
            text += "e" + std::to_string(static_cast<int>(random() % 700) - 350);
        }
        expect_double_as_the_c_library(text);
        if (HasFatalFailure()) {
            return;
        }
    }
}

TEST(core_number, random_hexadecimal_numbers_are_rounded_as_the_c_library_rounds_them) {
    std::mt19937_64 random(2001);
    const std::string hexadecimal = "0123456789abcdefABCDEF00000000088";
    for (int round = 0; round < 100000; ++round) {
        std::string text = random() % 2 == 0 ? "-0x" : "0X";
        const std::size_t digits = 1 + random() % 30;
        const std::size_t point = random() % (digits + 1);
        for (std::size_t i = 0; i < digits; ++i) {
            text += i == point ? "." : "";
            text += hexadecimal[random() % hexadecimal.size()];
        }
        if (random() % 4 != 0) {
            text += "p" + std::to_string(static_cast<int>(random() % 2400) - 1200);
        }
        expect_double_as_the_c_library(text);
        if (HasFatalFailure()) {
            return;
        }
    }
}

TEST(core_number, texts_halfway_between_two_doubles_are_rounded_as_the_c_library_rounds_them) {
    std::mt19937_64 random(2002);
    for (int round = 0; round < 3000; ++round) {
        const double below = std::bit_cast<double>(random() & 0x7FEFFFFFFFFFFFFFu);
        const double above = std::nextafter(below, std::numeric_limits<double>::infinity());
        const long double middle = (static_cast<long double>(below) + static_cast<long double>(above)) / 2;
        char text[1200];
        std::snprintf(text, sizeof(text), "%.1090Le", middle);
        expect_double_as_the_c_library(text);
        std::string nudged = text;
        nudged.insert(nudged.find('e'), "1");
        expect_double_as_the_c_library(nudged);
        if (HasFatalFailure()) {
            return;
        }
    }
}

TEST(core_number, a_written_double_is_read_back_exactly_and_as_the_standard_library_writes_it) {
    std::mt19937_64 random(8);
    for (int round = 0; round < 200000; ++round) {
        const double number = std::bit_cast<double>(random());
        if (!std::isfinite(number)) {
            continue;
        }
        const std::string text = double_text(number);
        char shortest[64];
        std::string standard(shortest, std::to_chars(shortest, shortest + sizeof(shortest), number).ptr);
        if (standard.find_first_of(".e") == std::string::npos) {
            standard += ".0";
        }
        ASSERT_EQ(text, standard);
        const bk::DoubleText back = bk::text_to_double(text);
        ASSERT_EQ(std::bit_cast<std::uint64_t>(back.value), std::bit_cast<std::uint64_t>(number)) << text;
        ASSERT_EQ(back.length, text.size());
        ASSERT_LE(text.size(), bk::number_text_capacity);
    }
}

} // namespace
