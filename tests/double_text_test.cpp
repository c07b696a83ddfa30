#include "core/core_string.h"
#include "parser/parser_entry.h"
#include "parser/parser_group.h"

#include "tests/support/parsed_text.h"
#include "tests/support/plain_text.h"

#include <gtest/gtest.h>

#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <string>
#include <vector>

namespace {

using Limits = std::numeric_limits<double>;

std::string appended(double number) {
    CoreString text;
    text += number;
    return plain(text);
}

/// The result of std::to_chars, with ".0" added if a reader would take it for an int.
std::string expected_text(double number) {
    char text[64];
    std::string shortest(text, std::to_chars(text, text + sizeof(text), number).ptr);
    return shortest.find_first_of(".en") == std::string::npos ? shortest + ".0" : shortest;
}

std::vector<double> edge_cases() {
    std::vector<double> numbers = {0.0,
                                   -0.0,
                                   1.0,
                                   -1.0,
                                   60.0,
                                   99999.0,
                                   100000.0,
                                   120000.0,
                                   9999999.0,
                                   1e7,
                                   2147483647.0,
                                   2147483648.0,
                                   -2147483648.0,
                                   4294967296.0,
                                   1732284937123.0,
                                   9007199254740993.0,
                                   123456789012345680000.0,
                                   1e15,
                                   1e22,
                                   1e23,
                                   1e300,
                                   Limits::max(),
                                   Limits::lowest(),
                                   Limits::min(),
                                   Limits::denorm_min(),
                                   Limits::epsilon(),
                                   0.1,
                                   1.0 / 3.0};
    for (int power = -1074; power < 1024; ++power) {
        const double number = std::ldexp(1.0, power);
        numbers.insert(numbers.end(),
                       {number, std::nextafter(number, 0.0), std::nextafter(number, 2 * number)});
    }
    for (double power = 1.0; power < 1e23; power *= 10.0) {
        numbers.insert(numbers.end(), {power, power - 1.0, power + 1.0, 3 * power, -power});
    }
    return numbers;
}

std::vector<double> random_doubles() {
    std::mt19937_64 random(60);
    std::vector<double> numbers;
    while (numbers.size() < 100000) {
        const double whole = static_cast<double>(static_cast<std::int64_t>(random()) >> random() % 63);
        for (const double number : {std::bit_cast<double>(random()), whole, whole / 100.0}) {
            if (std::isfinite(number)) {
                numbers.push_back(number);
            }
        }
    }
    return numbers;
}

void expect_to_come_back(double number) {
    const std::string text = appended(number);
    ASSERT_EQ(text, expected_text(number));
    const double back = static_cast<double>(CoreString(text));
    ASSERT_EQ(std::bit_cast<std::uint64_t>(back), std::bit_cast<std::uint64_t>(number)) << text;
    OwnedWord word(text);
    ParserValue::Type type{};
    ASSERT_TRUE(word->is_value(type)) << text;
    ASSERT_EQ(type, ParserValue::TYPE_DOUBLE) << text;
}

void expect_to_come_back(const std::vector<double>& numbers) {
    for (const double number : numbers) {
        expect_to_come_back(number);
        if (testing::Test::HasFatalFailure()) {
            return;
        }
    }
}

TEST(double_text, whole_numbers_have_a_point) {
    EXPECT_EQ(appended(60.0), "60.0");
    EXPECT_EQ(appended(-0.0), "-0.0");
    EXPECT_EQ(appended(0.0), "0.0");
    EXPECT_EQ(appended(1732284937123.0), "1732284937123.0");
    EXPECT_EQ(appended(1e300), "1e+300");
    EXPECT_EQ(appended(1.2), "1.2");
}

TEST(double_text, infinities_and_not_a_number_are_as_the_standard_library_writes_them) {
    EXPECT_EQ(appended(Limits::infinity()), "inf");
    EXPECT_EQ(appended(-Limits::infinity()), "-inf");
    EXPECT_EQ(appended(Limits::quiet_NaN()), "nan");
    EXPECT_EQ(appended(-Limits::quiet_NaN()), "-nan");
}

TEST(double_text, edge_cases_read_back_as_doubles_of_the_same_bits) {
    expect_to_come_back(edge_cases());
}

TEST(double_text, random_doubles_read_back_as_doubles_of_the_same_bits) {
    expect_to_come_back(random_doubles());
}

TEST(double_text, doubles_that_were_added_come_back_from_the_text_with_their_type) {
    ParserGroup group(CoreString("root"));
    ParserEntry* const made = group.add_entry(CoreString("numbers"), 0, 0);
    std::vector<double> numbers = edge_cases();
    const std::vector<double> more = random_doubles();
    numbers.insert(numbers.end(), more.begin(), more.end());
    for (const double number : numbers) {
        made->add_double(number);
    }
    CoreString text;
    group.get_text(text, false, true, 1);
    ParsedText parsed(text.get_view());
    ASSERT_EQ(parsed.count(), 1u);
    const ParserEntry& entry = parsed.entry(0);
    ASSERT_EQ(entry.get_value_count(), numbers.size());
    for (unsigned int i = 0; i < entry.get_value_count(); ++i) {
        ASSERT_EQ(entry.get_value_type(i), ParserValue::TYPE_DOUBLE) << appended(numbers[i]);
        ASSERT_EQ(std::bit_cast<std::uint64_t>(entry.get_double(i)),
                  std::bit_cast<std::uint64_t>(numbers[i]));
    }
}

TEST(double_text, a_double_that_was_read_keeps_its_spelling) {
    ParsedText parsed("a 60. 1e5 0.50 -0. 1e\n");
    EXPECT_EQ(parsed.print(), " a 60. 1e5 0.50 -0. 1e");
}

} // namespace
