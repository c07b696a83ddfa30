#include "core/numbers/core_number_impl.h"
#include "core/numbers/core_number_short_impl.h"

#include <gtest/gtest.h>

#include <charconv>
#include <cmath>
#include <cstdio>
#include <limits>
#include <random>
#include <string>

namespace {

std::string shortest(double number) {
    char text[64];
    const std::string written(text, std::to_chars(text, text + sizeof(text), number).ptr);
    return written.find_first_of(".en") == std::string::npos ? written + ".0" : written;
}

/// Empty when the number has no short form.
std::string short_text(double number) {
    char text[bk::short_double_capacity];
    return {text, bk::write_short_double(text, number)};
}

bool is_short_or_left(double number) {
    const std::string text = short_text(number);
    return text.empty() || text == shortest(number);
}

} // namespace

#if defined(__SIZEOF_INT128__)

TEST(core_number_short, usual_numbers_are_written_the_short_way) {
    for (const double number :
         {0.5, 1.0, -1.0, 2.25, 0.01, 0.1, -0.3, 99999.0, 9999999.5, 1234567.12345678, 0.01234567, 100000.5,
          -391.32, 3.14159265, 9999999.99999999, 1024.0, 0.015625}) {
        EXPECT_EQ(short_text(number), shortest(number)) << number;
    }
}

TEST(core_number_short, every_number_of_two_digits_behind_the_point_is_written_the_short_way) {
    for (int i = 1; i < 200000; ++i) {
        const double number = i / 100.0;
        ASSERT_EQ(short_text(number), shortest(number)) << i;
        ASSERT_EQ(short_text(-number), shortest(-number)) << i;
    }
}

TEST(core_number_short, random_numbers_of_up_to_eight_digits_behind_the_point_are_written_the_short_way) {
    std::mt19937_64 random(20240701);
    double scale = 1.0;
    for (int digits = 0; digits <= 8; ++digits, scale *= 10.0) {
        for (int round = 0; round < 20000; ++round) {
            const auto most = static_cast<std::uint64_t>(1e7 * scale);
            const double number = static_cast<double>(random() % (most >> random() % 24)) / scale;
            if (number < 0.01 || (number == std::floor(number) && number > 99999.0)) {
                continue;
            }
            ASSERT_EQ(short_text(number), shortest(number)) << number;
        }
    }
}

#endif

TEST(core_number_short, numbers_that_need_more_digits_are_left) {
    for (const double number : {1.0 / 3.0, 0.123456789, 3.141592653589793, 1e7, 12345678.9, 1e-3, 0.009999,
                                0.0, -0.0, 1e300, 100000.0, 120000.0, 9999999.0, 5e-324}) {
        EXPECT_EQ(short_text(number), "") << number;
    }
    EXPECT_EQ(short_text(std::numeric_limits<double>::infinity()), "");
    EXPECT_EQ(short_text(std::numeric_limits<double>::quiet_NaN()), "");
}

TEST(core_number_short, neighbours_of_short_numbers_are_not_taken_for_them) {
    std::mt19937_64 random(20240702);
    for (int round = 0; round < 50000; ++round) {
        double number = static_cast<double>(random() % 1000000000) / 1e4;
        for (int step = 0; step < 3; ++step) {
            number = std::nextafter(number, round % 2 == 0 ? 1e9 : 0.0);
            ASSERT_TRUE(is_short_or_left(number)) << number;
        }
    }
}

TEST(core_number_short, powers_of_two_and_their_neighbours_keep_their_text) {
    for (double power = 1.0 / 64; power < 1e7; power *= 2) {
        for (const double number : {power, std::nextafter(power, 0.0), std::nextafter(power, 1e9)}) {
            EXPECT_TRUE(is_short_or_left(number)) << number;
        }
    }
}

TEST(core_number_short, random_doubles_keep_their_text) {
    std::mt19937_64 random(20240703);
    for (int round = 0; round < 200000; ++round) {
        const double number =
            std::ldexp(static_cast<double>(random() >> 11), static_cast<int>(random() % 40) - 60);
        ASSERT_TRUE(is_short_or_left(number)) << number;
    }
}
