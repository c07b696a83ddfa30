#include "parser/parser_group.h"
#include "parser/parser_value.h"

#include "tests/support/plain_text.h"
#include "tests/support/recording_log.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <utility>

using namespace std::literals;

namespace {

TEST(value_text, a_bool_is_yes_or_no) {
    EXPECT_EQ(written(ParserValue(true)), "yes");
    EXPECT_EQ(written(ParserValue(false)), "no");
}

TEST(value_text, a_char_is_its_signed_code_and_never_a_character) {
    EXPECT_EQ(written(ParserValue('A')), "65");
    EXPECT_EQ(written(ParserValue('\0')), "0");
    EXPECT_EQ(written(ParserValue(static_cast<char>(0xE9))), "-23");
    EXPECT_EQ(written(ParserValue(static_cast<char>(0x80))), "-128");
}

TEST(value_text, an_int_is_its_decimal_number) {
    EXPECT_EQ(written(ParserValue(0)), "0");
    EXPECT_EQ(written(ParserValue(-12)), "-12");
    EXPECT_EQ(written(ParserValue(std::numeric_limits<int>::max())), "2147483647");
    EXPECT_EQ(written(ParserValue(std::numeric_limits<int>::min())), "-2147483648");
}

TEST(value_text, a_double_is_the_shortest_text_that_reads_back) {
    EXPECT_EQ(written(ParserValue(1.0)), "1.0");
    EXPECT_EQ(written(ParserValue(1.2)), "1.2");
    EXPECT_EQ(written(ParserValue(-0.0)), "-0.0");
    EXPECT_EQ(written(ParserValue(1e300)), "1e+300");
    EXPECT_EQ(written(ParserValue(0.1 + 0.2)), "0.30000000000000004");
    EXPECT_EQ(written(ParserValue(std::numeric_limits<double>::infinity())), "1.7976931348623157e+308");
}

TEST(value_text, a_string_is_quoted_and_escaped) {
    const std::pair<std::string, std::string> cases[] = {
        {"", "\"\""},
        {"abc", "\"abc\""},
        {"\t", "\"\\t\""},
        {"\n", "\"\\n\""},
        {"\r", "\"\\r\""},
        {"\"", "\"\\\"\""},
        {"'", "\"\\'\""},
        {"\\", "\"\\\\\""},
        {"a\0b"s, "\"a\0b\""s},
        {"\x01\x7F\xC3\xA9", "\"\x01\x7F\xC3\xA9\""},
        {"<empty>", "\"<empty>\""},
        {"a 'text' that \"stands\"\nin a block", "\"a \\'text\\' that \\\"stands\\\"\\nin a block\""}};
    for (const auto& [text, expected] : cases) {
        EXPECT_EQ(written(ParserValue(CoreString(std::string_view(text)))), expected);
        EXPECT_EQ(written(ParserValue(ParserValue::TYPE_STRING, CoreString(std::string_view(text)))),
                  expected);
    }
}

TEST(value_text, a_word_stays_the_text_it_is) {
    for (const char* text : {"<empty>", "anything \"at\" all", ""}) {
        EXPECT_EQ(written(ParserValue(ParserValue::TYPE_WORD, CoreString(text))), text);
    }
}

TEST(value_text, a_group_is_in_braces_with_or_without_a_name) {
    ParserGroup named(CoreString("g"));
    named.add_entry(CoreString("a"), 0, 0)->add_int(1);
    EXPECT_EQ(written(ParserValue(new ParserGroup(named))), "g { a 1 }");
    EXPECT_EQ(written(ParserValue(static_cast<ParserGroup*>(nullptr))), "{ }");
}

TEST(value_text, a_text_once_made_is_used_again) {
    const ParserValue value(1.5);
    EXPECT_EQ(written(value), "1.5");
    EXPECT_EQ(written(value), "1.5");
    EXPECT_EQ(value.get_as_double(), 1.5);
}

TEST(value_text, it_is_appended_to_what_is_there) {
    CoreString out("a ");
    ParserValue(12).get_text(out, false, 1);
    ParserValue(CoreString("x")).get_text(out, true, 1);
    EXPECT_EQ(plain(out), "a 12\"x\"");
}

TEST(value_text, a_text_is_never_a_mismatch) {
    RecordingLog log;
    char bytes[] = {1};
    written(ParserValue(true));
    written(ParserValue(bytes, 1));
    written(ParserValue(CoreString("x")));
    written(ParserValue(ParserValue::TYPE_WORD, CoreString("x")));
    written(ParserValue(static_cast<ParserValue::Type>(42), CoreString("x")));
    written(ParserValue(static_cast<ParserGroup*>(nullptr)));
    EXPECT_TRUE(log.is_empty());
}

} // namespace
