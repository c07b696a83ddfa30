#include "core/numbers/core_number_margined_impl.h"

#include <gtest/gtest.h>

#include <cfenv>
#include <charconv>
#include <cmath>
#include <random>
#include <string>

namespace {

double expected(const std::string& text) {
    double value = 0.0;
    std::from_chars(text.data(), text.data() + text.size(), value);
    return value;
}

/// The bytes in the margin are digits, which must not change the result.
bool is_plain_int(const std::string& text, int& value) {
    const std::string room = std::string(bk::number_margin, '9') + text;
    return bk::read_margined_int(std::string_view(room).substr(bk::number_margin), value);
}

bool is_plain_decimal(const std::string& text, double& value) {
    const std::string room = std::string(bk::number_margin, '.') + text;
    return bk::read_margined_decimal(std::string_view(room).substr(bk::number_margin), value);
}

void expect_decimal(const std::string& text) {
    double value = 0.0;
    EXPECT_TRUE(is_plain_decimal(text, value)) << text;
    EXPECT_EQ(value, expected(text)) << text;
}

std::string random_digits(std::mt19937_64& random, std::size_t count) {
    std::string digits;
    while (digits.size() < count) {
        digits += static_cast<char>('0' + random() % 10);
    }
    return digits;
}

} // namespace

TEST(core_number_margined, usual_ints_are_read_the_short_way) {
    for (const int expected :
         {0, 1, -1, 7, 10, -99, 123, 4096, -70000, 999999, 1234567, 12345678, -99999999}) {
        int value = 1;
        EXPECT_TRUE(is_plain_int(std::to_string(expected), value)) << expected;
        EXPECT_EQ(value, expected);
    }
    int value = 1;
    EXPECT_TRUE(is_plain_int("-0007", value));
    EXPECT_EQ(value, -7);
}

TEST(core_number_margined, other_texts_are_no_usual_ints) {
    for (const char* text :
         {"", "-", "--1", "+1", " 1", "1 ", "1x", "0x1", "123456789", "-123456789", "1.5", "a"}) {
        int value = 5;
        EXPECT_FALSE(is_plain_int(text, value)) << text;
        EXPECT_EQ(value, 5);
    }
}

TEST(core_number_margined, usual_decimals_are_read_the_short_way) {
    for (const char* text :
         {"0.5", ".5", "5.", "-.5", "-5.", "-391.32", "0.185300", "1.744325", "-0.326425", "1234567.",
          ".1234567", "9.999999", "0.12345678", "12345678.9", "123456789012345.", ".123456789012345"}) {
        expect_decimal(text);
    }
}

TEST(core_number_margined, random_decimals_are_read_the_short_way) {
    std::mt19937_64 random(20240710);
    for (int round = 0; round < 20000; ++round) {
        std::string text = random_digits(random, 1 + random() % 15);
        text.insert(random() % (text.size() + 1), ".");
        expect_decimal(text);
        expect_decimal("-" + text);
    }
}

TEST(core_number_margined, other_texts_are_no_usual_decimals) {
    for (const char* text : {"",
                             "-",
                             ".",
                             "-.",
                             "--1.0",
                             "+1.5",
                             " 1.5",
                             "1.5 ",
                             "1e5",
                             "1.5e5",
                             "1.2.3",
                             "..1",
                             "1..",
                             "nan",
                             "0x1",
                             "0x1.8",
                             "0",
                             "1",
                             "-1",
                             "123456789",
                             "12345678901234567",
                             "0.12345678x",
                             "x.123456789",
                             "0.1234.5678",
                             "0.12345678.",
                             "0..12345678",
                             "1.2345678e-5",
                             "+1.23456789",
                             "1.23456789012345678x",
                             "x.23456789012345678",
                             "1.2345678901234.6789",
                             ".1234567890.12345678",
                             "..2345678901234567890",
                             "12.345678901234567890",
                             "1.23456789012345678901"}) {
        double value = 5.0;
        EXPECT_FALSE(is_plain_decimal(text, value)) << text;
        EXPECT_EQ(value, 5.0) << text;
    }
}

TEST(core_number_margined, a_negative_zero_keeps_its_sign) {
    double value = 1.0;
    ASSERT_TRUE(is_plain_decimal("-0.0", value));
    EXPECT_TRUE(std::signbit(value));
    ASSERT_TRUE(is_plain_decimal("0.0", value));
    EXPECT_FALSE(std::signbit(value));
}

#if defined(__SIZEOF_INT128__)

TEST(core_number_margined, long_decimals_are_read_the_short_way) {
    for (const char* text :
         {"-65.613616999999977", "43.420273000000009", "0.30000000000000004", "1234567.123456789012",
          "-1.000000000000000001", "0.9999999999999999", "9.999999999999999999", "0.000000000000000001",
          "123456789012345678.9", "12345678901234567.89", "1234.567890123456789", ".1234567890123456",
          ".1234567890123456789", "1234567890123456.7"}) {
        expect_decimal(text);
    }
}

TEST(core_number_margined, random_long_decimals_are_rounded_to_the_nearest_double) {
    std::mt19937_64 random(20240711);
    for (std::size_t whole = 1; whole <= 18; ++whole) {
        for (std::size_t fraction = 1; whole + fraction <= 19; ++fraction) {
            for (int round = 0; round < 500; ++round) {
                const std::string sign = random() % 2 == 0 ? "" : "-";
                const std::string text =
                    random_digits(random, whole - 1) + "7." + random_digits(random, fraction);
                expect_decimal(sign + text);
            }
        }
    }
}

TEST(core_number_margined, decimals_beside_the_middle_between_two_doubles_are_rounded_to_the_nearest) {
    std::mt19937_64 random(20240712);
    for (int round = 0; round < 20000; ++round) {
        // Between 4 and 8, the midpoints between doubles are multiples of 2^-51. They have 51 decimal places,
        // of which the text keeps 17.
        const std::uint64_t odd = (std::uint64_t{1} << 53) + (random() % (std::uint64_t{1} << 53) | 1);
        const std::uint64_t whole = odd >> 51;
        std::uint64_t rest = odd & ((std::uint64_t{1} << 51) - 1);
        std::string text = std::to_string(whole) + ".";
        for (int i = 0; i < 17; ++i) {
            rest *= 10;
            text += static_cast<char>('0' + (rest >> 51));
            rest &= (std::uint64_t{1} << 51) - 1;
        }
        expect_decimal(text);
    }
}

#endif

TEST(core_number_margined, the_rounding_mode_changes_nothing) {
    std::mt19937_64 random(20240713);
    for (const int mode : {FE_UPWARD, FE_DOWNWARD, FE_TOWARDZERO}) {
        for (int round = 0; round < 1000; ++round) {
            const std::string text = random_digits(random, 2) + "." + random_digits(random, random() % 17);
            const double nearest = expected(text);
            std::fesetround(mode);
            double value = 0.0;
            const bool is_read = is_plain_decimal(text, value);
            std::fesetround(FE_TONEAREST);
            ASSERT_TRUE(!is_read || value == nearest) << text;
        }
    }
}
