#include "parser/parser_value.h"

#include "tests/support/plain_text.h"
#include "tests/support/recording_log.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>
#include <utility>
#include <vector>

namespace {

ParserValue text(ParserValue::Type type, const char* spelling) {
    return ParserValue(type, CoreString(spelling));
}

class value_read : public testing::Test {
protected:
    RecordingLog log;
    void TearDown() override { EXPECT_EQ(log.messages, std::vector<LoggedMessage>()); }
};

TEST_F(value_read, only_the_whole_word_yes_is_true) {
    EXPECT_TRUE(text(ParserValue::TYPE_BOOL, "yes").get_as_bool());
    for (const char* spelling : {"no", "true", "Yes", "YES", "1", "", "yes ", " yes", "ye", "yesyes", "y"}) {
        EXPECT_FALSE(text(ParserValue::TYPE_BOOL, spelling).get_as_bool()) << spelling;
    }
}

TEST_F(value_read, a_bool_is_read_as_any_scalar) {
    for (const bool truth : {false, true}) {
        const ParserValue value(truth);
        EXPECT_EQ(value.get_as_bool(), truth);
        EXPECT_EQ(value.get_as_char(), truth ? 1 : 0);
        EXPECT_EQ(value.get_as_int(), truth ? 1 : 0);
        EXPECT_EQ(value.get_as_double(), truth ? 1.0 : 0.0);
    }
}

TEST_F(value_read, a_char_is_read_as_any_scalar_with_its_sign) {
    const ParserValue value(static_cast<char>(0xE9));
    EXPECT_TRUE(value.get_as_bool());
    EXPECT_EQ(value.get_as_char(), static_cast<char>(0xE9));
    EXPECT_EQ(value.get_as_int(), -23);
    EXPECT_EQ(value.get_as_double(), -23.0);
    EXPECT_FALSE(ParserValue('\0').get_as_bool());
    EXPECT_EQ(ParserValue('A').get_as_int(), 65);
}

TEST_F(value_read, an_int_is_read_as_any_scalar) {
    EXPECT_TRUE(ParserValue(-1).get_as_bool());
    EXPECT_TRUE(ParserValue(256).get_as_bool());
    EXPECT_FALSE(ParserValue(0).get_as_bool());
    EXPECT_EQ(ParserValue(300).get_as_char(), 44);
    EXPECT_EQ(ParserValue(-1).get_as_char(), static_cast<char>(-1));
    EXPECT_EQ(ParserValue(INT_MIN).get_as_char(), 0);
    EXPECT_EQ(ParserValue(INT_MIN).get_as_double(), -2147483648.0);
    EXPECT_EQ(ParserValue(INT_MAX).get_as_double(), 2147483647.0);
}

TEST_F(value_read, a_double_is_read_as_any_scalar) {
    EXPECT_TRUE(ParserValue(0.1).get_as_bool());
    EXPECT_TRUE(ParserValue(-5e-324).get_as_bool());
    EXPECT_FALSE(ParserValue(0.0).get_as_bool());
    EXPECT_FALSE(ParserValue(-0.0).get_as_bool());
    EXPECT_EQ(ParserValue(65.9).get_as_char(), 'A');
    EXPECT_EQ(ParserValue(300.5).get_as_char(), 44);
    EXPECT_EQ(ParserValue(-1.5).get_as_char(), static_cast<char>(-1));
    EXPECT_EQ(ParserValue(3e9).get_as_char(), 0);
}

TEST_F(value_read, a_double_is_truncated_toward_zero) {
    const std::pair<double, int> cases[] = {{2.9, 2},
                                            {-2.9, -2},
                                            {0.999, 0},
                                            {-0.999, 0},
                                            {2147483647.0, INT_MAX},
                                            {2147483647.5, INT_MAX},
                                            {-2147483648.0, INT_MIN},
                                            {-2147483648.9, INT_MIN}};
    for (const auto& [number, expected] : cases) {
        EXPECT_EQ(ParserValue(number).get_as_int(), expected) << number;
    }
}

TEST_F(value_read, a_double_outside_the_int_range_reads_as_the_lowest_int) {
    for (const double number : {2147483648.0, 3e9, -2147483649.0, -3e9, 1e300, -1e300}) {
        EXPECT_EQ(ParserValue(number).get_as_int(), INT_MIN) << number;
    }
}

TEST_F(value_read, the_text_of_a_char_is_its_code) {
    const std::pair<const char*, int> cases[] = {{"65", 65}, {"300", 44},  {"-23", -23}, {"255", -1},
                                                 {"A", 0},   {"", 0},      {" 7x", 7},   {"2147483648", -1},
                                                 {"-1", -1}, {"128", -128}};
    for (const auto& [spelling, expected] : cases) {
        EXPECT_EQ(text(ParserValue::TYPE_CHAR, spelling).get_as_char(), static_cast<char>(expected))
            << spelling;
        EXPECT_EQ(text(ParserValue::TYPE_CHAR, spelling).get_as_int(), expected) << spelling;
    }
}

TEST_F(value_read, the_text_of_an_int_is_read_up_to_where_it_is_one) {
    const std::pair<const char*, int> cases[] = {{"12", 12},
                                                 {"-12", -12},
                                                 {"+7", 7},
                                                 {"12ab", 12},
                                                 {"1E5", 1},
                                                 {"", 0},
                                                 {"abc", 0},
                                                 {"2.9", 2},
                                                 {"2147483648", INT_MAX},
                                                 {"-2147483649", INT_MIN},
                                                 {"0x1F", 0},
                                                 {" 5", 5},
                                                 {"007", 7},
                                                 {"99999999999999999999", INT_MAX}};
    for (const auto& [spelling, expected] : cases) {
        EXPECT_EQ(text(ParserValue::TYPE_INT, spelling).get_as_int(), expected) << spelling;
    }
}

TEST_F(value_read, the_text_of_a_double_is_read_and_brought_to_the_finite_range) {
    const std::pair<const char*, double> cases[] = {{"1.50", 1.5},
                                                    {"-.5e1", -5.0},
                                                    {"1e", 1.0},
                                                    {"", 0.0},
                                                    {"abc", 0.0},
                                                    {"0x1p3", 8.0},
                                                    {"12", 12.0},
                                                    {"1,5", 1.0},
                                                    {"inf", 1.7976931348623157e308},
                                                    {"-infinity", -1.7976931348623157e308},
                                                    {"nan", -1.7976931348623157e308},
                                                    {"-nan", -1.7976931348623157e308},
                                                    {"1e999", 1.7976931348623157e308},
                                                    {"-1e999", -1.7976931348623157e308},
                                                    {"1e-999", 0.0}};
    for (const auto& [spelling, expected] : cases) {
        EXPECT_EQ(text(ParserValue::TYPE_DOUBLE, spelling).get_as_double(), expected) << spelling;
    }
}

TEST_F(value_read, a_value_read_from_text_is_read_as_every_scalar) {
    const ParserValue truth = text(ParserValue::TYPE_BOOL, "yes");
    EXPECT_EQ(truth.get_as_int(), 1);
    EXPECT_EQ(truth.get_as_double(), 1.0);
    const ParserValue number = text(ParserValue::TYPE_DOUBLE, "-2.9");
    EXPECT_EQ(number.get_as_int(), -2);
    EXPECT_TRUE(number.get_as_bool());
    const ParserValue zero = text(ParserValue::TYPE_INT, "0");
    EXPECT_FALSE(zero.get_as_bool());
}

TEST_F(value_read, reading_keeps_the_spelling) {
    const ParserValue number = text(ParserValue::TYPE_DOUBLE, "1.50");
    EXPECT_EQ(number.get_as_double(), 1.5);
    EXPECT_EQ(written(number), "1.50");
    EXPECT_EQ(number.get_as_double(), 1.5);
    const ParserValue truth = text(ParserValue::TYPE_BOOL, "true");
    EXPECT_FALSE(truth.get_as_bool());
    EXPECT_EQ(written(truth), "true");
    const ParserValue integer = text(ParserValue::TYPE_INT, "+0012 and more of it");
    EXPECT_EQ(integer.get_as_int(), 12);
    EXPECT_EQ(written(integer), "+0012 and more of it");
}

TEST_F(value_read, converting_in_advance_changes_nothing_that_is_read) {
    for (const ParserValue::Type type :
         {ParserValue::TYPE_BOOL, ParserValue::TYPE_CHAR, ParserValue::TYPE_INT, ParserValue::TYPE_DOUBLE,
          ParserValue::TYPE_STRING, ParserValue::TYPE_WORD}) {
        const ParserValue lazy = text(type, "65.5");
        const ParserValue made = text(type, "65.5");
        made.make_value();
        made.make_value();
        EXPECT_EQ(written(made), written(lazy));
        if (type != ParserValue::TYPE_STRING && type != ParserValue::TYPE_WORD) {
            EXPECT_EQ(made.get_as_double(), lazy.get_as_double());
            EXPECT_EQ(written(made), "65.5");
        }
    }
}

TEST_F(value_read, converting_a_group_or_a_set_value_does_nothing) {
    const ParserValue group(static_cast<ParserGroup*>(nullptr));
    group.make_value();
    EXPECT_EQ(written(group), "{ }");
    const ParserValue number(7);
    number.make_value();
    EXPECT_EQ(number.get_as_int(), 7);
    EXPECT_EQ(written(number), "7");
}

TEST_F(value_read, a_string_is_read_by_reference) {
    const ParserValue value(CoreString("a text that stands in a block"));
    const CoreString& first = value.get_as_string();
    EXPECT_EQ(&value.get_as_string(), &first);
    EXPECT_EQ(plain(first), "a text that stands in a block");
}

TEST_F(value_read, bytes_are_read_where_the_value_keeps_them) {
    char bytes[] = "abc";
    const ParserValue value(bytes, 3);
    unsigned int size = 0;
    void* first = value.get_as_binary_data(size);
    EXPECT_EQ(value.get_as_binary_data(size), first);
    EXPECT_EQ(size, 3u);
}

TEST(value_mismatch, a_read_of_another_type_gives_the_neutral_result_and_one_message) {
    char bytes[] = {1, 2, 3};
    const std::pair<ParserValue, std::string> cases[] = {
        {ParserValue(static_cast<ParserGroup*>(nullptr)), "TYPE_GROUP"},
        {ParserValue(CoreString("12")), "TYPE_STRING"},
        {ParserValue(ParserValue::TYPE_STRING, CoreString("yes")), "TYPE_STRING"},
        {ParserValue(bytes, 3), "TYPE_BINARY_DATA"},
        {ParserValue(ParserValue::TYPE_WORD, CoreString("12")), "TYPE_WORD"},
        {ParserValue(static_cast<ParserValue::Type>(99), CoreString("12")), "TYPE_UNKNOWN"}};
    for (const auto& [value, name] : cases) {
        const auto message = [type = name](const std::string& read) {
            return one_warning("ParserValue." + read + ": type mismatch, value type is '" + type + "' \n");
        };
        RecordingLog log;
        EXPECT_FALSE(value.get_as_bool());
        EXPECT_EQ(log.take(), message("get_as_bool"));
        EXPECT_EQ(value.get_as_char(), 0);
        EXPECT_EQ(log.take(), message("get_as_char"));
        EXPECT_EQ(value.get_as_int(), 0);
        EXPECT_EQ(log.take(), message("get_as_int"));
        EXPECT_EQ(value.get_as_double(), 0.0);
        EXPECT_EQ(log.take(), message("get_as_double"));
        if (name != "TYPE_STRING") {
            EXPECT_EQ(&value.get_as_string(), &CoreString::get_null_string());
            EXPECT_EQ(log.take(), message("get_as_string"));
        }
        if (name != "TYPE_BINARY_DATA") {
            unsigned int size = 77;
            EXPECT_EQ(value.get_as_binary_data(size), nullptr);
            EXPECT_EQ(size, 77u);
            EXPECT_EQ(log.take(), message("get_as_binary_data"));
        }
    }
}

TEST(value_mismatch, scalars_are_neither_strings_nor_binary_data) {
    const std::pair<ParserValue, std::string> cases[] = {
        {ParserValue(true), "TYPE_BOOL"},
        {ParserValue('a'), "TYPE_CHAR"},
        {ParserValue(12), "TYPE_INT"},
        {ParserValue(1.5), "TYPE_DOUBLE"},
        {ParserValue(ParserValue::TYPE_INT, CoreString("a spelling in a block of its own")), "TYPE_INT"}};
    for (const auto& [value, name] : cases) {
        RecordingLog log;
        EXPECT_EQ(&value.get_as_string(), &CoreString::get_null_string());
        EXPECT_EQ(log.take(),
                  one_warning("ParserValue.get_as_string: type mismatch, value type is '" + name + "' \n"));
        unsigned int size = 77;
        EXPECT_EQ(value.get_as_binary_data(size), nullptr);
        EXPECT_EQ(size, 77u);
        EXPECT_EQ(log.take(), one_warning("ParserValue.get_as_binary_data: type mismatch, value type is '" +
                                          name + "' \n"));
    }
}

TEST(value_mismatch, the_value_stays_as_it_was) {
    RecordingLog log;
    const ParserValue value(ParserValue::TYPE_INT, CoreString("0012"));
    value.get_as_string();
    EXPECT_EQ(value.get_as_int(), 12);
    EXPECT_EQ(written(value), "0012");
    EXPECT_EQ(log.messages.size(), 1u);
}

TEST(value_mismatch, below_the_threshold_nothing_is_said) {
    RecordingLog log(CoreLogHandler::level_error);
    const ParserValue value(CoreString("12"));
    EXPECT_EQ(value.get_as_int(), 0);
    EXPECT_FALSE(value.get_as_bool());
    EXPECT_TRUE(log.is_empty());
}

} // namespace
