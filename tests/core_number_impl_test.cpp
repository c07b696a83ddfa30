#include "core/numbers/core_number_impl.h"

#include "tests/support/number_reference.h"

#include "tests/support/comma_locale.h"

#include <gtest/gtest.h>

#include <climits>
#include <clocale>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <random>
#include <string>
#include <string_view>
#include <utility>

using namespace std::literals;

namespace {

const std::string odd_ints[] = {"",
                                " ",
                                "+",
                                "-",
                                "0",
                                "-0",
                                "+0",
                                "00",
                                "007",
                                "12",
                                "-12",
                                "+12",
                                "12ab",
                                "1E5",
                                "1e5",
                                "1.5",
                                ".5",
                                "0x10",
                                "0x",
                                "x10",
                                "--5",
                                "+-5",
                                "-+5",
                                "- 5",
                                " 5",
                                "\t5",
                                "\n5",
                                "\v5",
                                "\f5",
                                "\r5",
                                " \t\n\v\f\r-5 ",
                                "\b5",
                                "\xA0"
                                "5",
                                "5 6",
                                "5,6",
                                "5_000",
                                "\0"
                                "5"s,
                                "5\0"
                                "6"s,
                                "2147483646",
                                "2147483647",
                                "2147483648",
                                "-2147483647",
                                "-2147483648",
                                "-2147483649",
                                "4294967295",
                                "4294967296",
                                "4294967297",
                                "9223372036854775807",
                                "9223372036854775808",
                                "18446744073709551616",
                                "-9223372036854775809",
                                "123456789012345678901234567890",
                                "-123456789012345678901234567890",
                                "000000000000000000000000000000000000000042",
                                "+00000000000002147483648"};

const std::string odd_doubles[] = {
    "",
    " ",
    "+",
    "-",
    ".",
    "+.",
    "-.",
    "e",
    "e5",
    ".e5",
    "0",
    "-0",
    "+0",
    "-0.0",
    "00",
    "1",
    "1.",
    ".1",
    "-.1",
    "+.1",
    "1.5",
    "1.5.2",
    "1..5",
    "1e",
    "1e+",
    "1e-",
    "1e5",
    "1E5",
    "1e+5",
    "1e-5",
    "1e05",
    "1e 5",
    "1 e5",
    "1.e5",
    ".5e1",
    "1e5.5",
    "1ee5",
    "1e+-5",
    " \t\n\v\f\r1",
    "\xA0"
    "1",
    "--1",
    "+-1",
    "1,5",
    "1_0",
    "1d5",
    "1f",
    "1\0"
    "2"s,
    "\0"
    "1"s,
    "1e\0"
    "5"s,
    "inf",
    "INF",
    "Inf",
    "iNf",
    "-inf",
    "+inf",
    "infi",
    "infin",
    "infinit",
    "infinity",
    "INFINITY",
    "-infinity",
    "infinityx",
    "in",
    "i",
    "infx",
    "nan",
    "NAN",
    "NaN",
    "-nan",
    "+nan",
    "na",
    "n",
    "nanx",
    "nan(",
    "nan()",
    "nan(123)",
    "nan(abc_9)",
    "nan(a b)",
    "nan(a",
    "nan(a-b)",
    "nan )",
    "nan(\xE9)",
    "nan(0x1)",
    "0x",
    "0X",
    "0x1",
    "0X1",
    "0xA",
    "0xa",
    "0xg",
    "0x.",
    "0x.8",
    "0x8.",
    "0x1.8",
    "0x1.8p",
    "0x1.8p+",
    "0x1.8p1",
    "0x1.8P1",
    "0x1.8p-1",
    "0x1p4",
    "0xp4",
    "0x.p4",
    "-0x1p4",
    "+0x1p4",
    "0x1e5",
    "0x1p1.5",
    "0x0p0",
    "0x0.0p99999999999",
    "0x1p1023",
    "0x1p1024",
    "0x1p-1074",
    "0x1p-1075",
    "0x1.8p-1075",
    "0x1p-1076",
    "0x1.fffffffffffffp1023",
    "0x1.fffffffffffff8p1023",
    "0x1.fffffffffffff7p1023",
    "0x1.00000000000008p0",
    "0x1.00000000000018p0",
    "0x1.000000000000080000000000000001p0",
    "0x1.00000000000007ffffffffffffffffffp0",
    "0x0.0000000000001p-1022",
    "0x0.00000000000008p-1022",
    "0x0.000000000000080001p-1022",
    "0x1p99999999999999999999",
    "0x1p-99999999999999999999",
    "0x100000000000000000000000000000000000000000000000p-188",
    "0x0.000000000000000000000000000001p120",
    "x1",
    "0 x1",
    "0x 1",
    "0x-1",
    "0x1x",
    "0x1.2.3",
    "1e308",
    "1e309",
    "-1e309",
    "1e-307",
    "1e-308",
    "1e-323",
    "1e-324",
    "4.9e-324",
    "2.4703282292062327e-324",
    "2.4703282292062328e-324",
    "2.2250738585072011e-308",
    "2.2250738585072014e-308",
    "1.7976931348623157e308",
    "1.7976931348623158e308",
    "1.7976931348623159e308",
    "17976931348623157000000000000000000000",
    "1e99999999999999999999",
    "1e-99999999999999999999",
    "0e99999999999999999999",
    "-0e99999",
    "0.0000000000000000000000000000000000000000001e43",
    "10000000000000000000000000000000000000000000e-43",
    "9007199254740993",
    "9007199254740992.9999999",
    "9007199254740993.0000000000000000000000000001",
    "0.1",
    "0.1000000000000000055511151231257827",
    "17976931348623158079372897140530341507993413271003782693617377898044496829276475094664901797758720709633"
    "0286"
    "41669288791094655554785194040263065748867150582068190890200070838367627385484581771153176447573027006985"
    "5571"
    "366959622842914819860834936475292719074168444365510704342711559699508093042880",
    std::string(1000, '9'),
    "0." + std::string(1000, '0') + "1",
    std::string(400, '1') + "e-400",
    std::string(5000, '0') + "7",
    "1" + std::string(5000, '0') + "e-5000",
    "0x" + std::string(3000, 'f'),
    "0x1" + std::string(3000, '0') + "p-12000",
    "1e" + std::string(1000, '0') + "5",
    "+" + std::string(100, ' ')};

TEST(core_number, odd_texts_give_the_ints_of_the_c_library) {
    for (const std::string& text : odd_ints) {
        expect_int_as_the_c_library(text);
    }
    for (const std::string& text : odd_doubles) {
        expect_int_as_the_c_library(text);
    }
}

TEST(core_number, odd_texts_give_the_doubles_of_the_c_library) {
    for (const std::string& text : odd_doubles) {
        expect_double_as_the_c_library(text);
    }
    for (const std::string& text : odd_ints) {
        expect_double_as_the_c_library(text);
    }
}

TEST(core_number, an_int_out_of_range_is_the_nearest_limit) {
    EXPECT_EQ(bk::text_to_int("2147483648").value, INT_MAX);
    EXPECT_EQ(bk::text_to_int("-2147483649").value, INT_MIN);
    EXPECT_EQ(bk::text_to_int("99999999999999999999999999").value, INT_MAX);
    EXPECT_EQ(bk::text_to_int("-99999999999999999999999999").value, INT_MIN);
    EXPECT_EQ(bk::text_to_int("99999999999999999999999999 ").length, 26u);
}

TEST(core_number, a_double_out_of_range_is_infinite_or_zero) {
    EXPECT_EQ(bk::text_to_double("1e400").value, std::numeric_limits<double>::infinity());
    EXPECT_EQ(bk::text_to_double("-1e400").value, -std::numeric_limits<double>::infinity());
    EXPECT_EQ(bk::text_to_double("1e-400").value, 0.0);
    EXPECT_TRUE(std::signbit(bk::text_to_double("-1e-400").value));
}

TEST(core_number, an_exponent_without_digits_is_left_out) {
    EXPECT_EQ(bk::text_to_double("1e").value, 1.0);
    EXPECT_EQ(bk::text_to_double("1e").length, 1u);
    EXPECT_EQ(bk::text_to_double("1e+x").length, 1u);
    EXPECT_EQ(bk::text_to_double("0x1p").length, 3u);
}

TEST(core_number, a_view_that_ends_inside_a_longer_text_is_read_to_its_end_only) {
    const std::string_view text = "12345.625e7";
    for (std::size_t length = 0; length <= text.size(); ++length) {
        const std::string alone(text.substr(0, length));
        EXPECT_EQ(bk::text_to_int(text.substr(0, length)).value, reference_int(alone).value);
        EXPECT_EQ(bk::text_to_double(text.substr(0, length)).value, std::strtod(alone.c_str(), nullptr));
    }
    EXPECT_EQ(bk::text_to_double("infinity"sv.substr(0, 7)).length, 3u);
    EXPECT_EQ(bk::text_to_double("nan(12)"sv.substr(0, 6)).length, 3u);
    EXPECT_EQ(bk::text_to_int(std::string_view()).length, 0u);
    EXPECT_EQ(bk::text_to_double(std::string_view()).length, 0u);
}

TEST(core_number, ints_are_written_in_decimal) {
    char text[bk::number_text_capacity];
    for (const int number : {0, 1, -1, 9, 10, -10, 99, 100, 123456789, INT_MAX, INT_MIN}) {
        EXPECT_EQ(std::string(text, bk::write_int(text, number)), std::to_string(number));
    }
    std::mt19937 random(5);
    for (int round = 0; round < 10000; ++round) {
        const int number = static_cast<int>(random()) >> (random() % 32);
        ASSERT_EQ(std::string(text, bk::write_int(text, number)), std::to_string(number));
    }
}

TEST(core_number, unsigned_numbers_are_written_in_decimal) {
    char text[bk::number_text_capacity];
    for (const unsigned long long number : {0ull, 9ull, 10ull, 4294967296ull, ULLONG_MAX}) {
        EXPECT_EQ(std::string(text, bk::write_unsigned(text, number)), std::to_string(number));
    }
    std::mt19937_64 random(6);
    for (int round = 0; round < 10000; ++round) {
        const unsigned long long number = random() >> (random() % 64);
        ASSERT_EQ(std::string(text, bk::write_unsigned(text, number)), std::to_string(number));
    }
}

TEST(core_number, doubles_are_written_as_the_shortest_text_without_format_or_precision) {
    const std::pair<double, const char*> cases[] = {{0.0, "0.0"},
                                                    {-0.0, "-0.0"},
                                                    {1.0, "1.0"},
                                                    {-1.5, "-1.5"},
                                                    {0.1, "0.1"},
                                                    {1e5, "1e+05"},
                                                    {123456789.0, "123456789.0"},
                                                    {1e-4, "1e-04"},
                                                    {0.001, "0.001"},
                                                    {1e-5, "1e-05"},
                                                    {1e21, "1e+21"},
                                                    {1e100, "1e+100"},
                                                    {5e-324, "5e-324"},
                                                    {2.5, "2.5"},
                                                    {1.2, "1.2"},
                                                    {3.141592653589793, "3.141592653589793"},
                                                    {1.7976931348623157e308, "1.7976931348623157e+308"}};
    for (const auto& [number, expected] : cases) {
        EXPECT_EQ(double_text(number), expected);
    }
}

TEST(core_number, the_locale_of_the_process_does_not_matter) {
    const CommaLocale locale;
    if (!locale.is_set()) {
        GTEST_SKIP() << CommaLocale::reason;
    }
    const double read = bk::text_to_double("1.5").value;
    const double hexadecimal = bk::text_to_double("0x1.8").value;
    const std::size_t comma = bk::text_to_double("1,5").length;
    const std::string text = double_text(1.5);
    EXPECT_EQ(read, 1.5);
    EXPECT_EQ(hexadecimal, 1.5);
    EXPECT_EQ(comma, 1u);
    EXPECT_EQ(text, "1.5");
}

} // namespace
