#include "parser/parser_entry.h"
#include "parser/parser_group.h"
#include "tests/support/plain_text.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

std::string written_as_read(ParserValue::Type type, const char* text) {
    return written(ParserValue(type, CoreString(text)));
}

std::string written_string(std::string_view text) {
    return written(ParserValue(CoreString(text)));
}

} // namespace

TEST(text_writer_values, a_bool_is_yes_or_no) {
    EXPECT_EQ(written(ParserValue(true)), "yes");
    EXPECT_EQ(written(ParserValue(false)), "no");
}

TEST(text_writer_values, a_char_is_its_code) {
    EXPECT_EQ(written(ParserValue('A')), "65");
    EXPECT_EQ(written(ParserValue('\0')), "0");
    EXPECT_EQ(written(ParserValue(static_cast<char>(0xE9))), "-23");
}

TEST(text_writer_values, an_int_is_decimal) {
    EXPECT_EQ(written(ParserValue(0)), "0");
    EXPECT_EQ(written(ParserValue(-12)), "-12");
    EXPECT_EQ(written(ParserValue(std::numeric_limits<int>::max())), "2147483647");
    EXPECT_EQ(written(ParserValue(std::numeric_limits<int>::min())), "-2147483648");
}

TEST(text_writer_values, a_double_is_the_shortest_text_that_reads_back) {
    EXPECT_EQ(written(ParserValue(1.5)), "1.5");
    EXPECT_EQ(written(ParserValue(0.1)), "0.1");
    EXPECT_EQ(written(ParserValue(1.2)), "1.2");
    EXPECT_EQ(written(ParserValue(-0.25)), "-0.25");
    EXPECT_EQ(written(ParserValue(1e300)), "1e+300");
    EXPECT_EQ(written(ParserValue(1.0 / 3.0)), "0.3333333333333333");
}

TEST(text_writer_values, a_double_that_is_not_finite_is_written_as_the_nearest_bound) {
    EXPECT_EQ(written(ParserValue(std::numeric_limits<double>::infinity())), "1.7976931348623157e+308");
    EXPECT_EQ(written(ParserValue(-std::numeric_limits<double>::infinity())), "-1.7976931348623157e+308");
    EXPECT_EQ(written(ParserValue(std::numeric_limits<double>::quiet_NaN())), "-1.7976931348623157e+308");
}

TEST(text_writer_values, binary_data_is_its_bytes_and_their_sum) {
    unsigned char bytes[] = {0x01, 0xFF};
    EXPECT_EQ(written(ParserValue(bytes, 2u)), "0x01FF00010000");
    EXPECT_EQ(written(ParserValue(bytes, 1u)), "0x0101000000");
}

TEST(text_writer_values, binary_data_of_no_bytes_is_its_sum_alone) {
    EXPECT_EQ(written(ParserValue(nullptr, 0u)), "0x00000000");
}

TEST(text_writer_values, a_word_is_its_text) {
    EXPECT_EQ(written_as_read(ParserValue::TYPE_WORD, "any thing \"at\" all"), "any thing \"at\" all");
}

TEST(text_writer_values, values_read_from_text_keep_their_spelling) {
    EXPECT_EQ(written_as_read(ParserValue::TYPE_BOOL, "maybe"), "maybe");
    EXPECT_EQ(written_as_read(ParserValue::TYPE_CHAR, "065"), "065");
    EXPECT_EQ(written_as_read(ParserValue::TYPE_INT, "+007"), "+007");
    EXPECT_EQ(written_as_read(ParserValue::TYPE_DOUBLE, "1.50"), "1.50");
}

TEST(text_writer_values, a_typed_read_does_not_change_the_spelling) {
    const ParserValue value(ParserValue::TYPE_DOUBLE, "1.50");
    EXPECT_EQ(value.get_as_double(), 1.5);
    EXPECT_EQ(written(value), "1.50");
}

TEST(text_writer_values, a_value_that_was_set_has_a_new_text) {
    ParserValue value(ParserValue::TYPE_DOUBLE, "1.50");
    value.set_double(1.5);
    EXPECT_EQ(written(value), "1.5");
    value.set_bool(true);
    EXPECT_EQ(written(value), "yes");
    value.set_string("s");
    EXPECT_EQ(written(value), "\"s\"");
}

TEST(text_writer_values, a_string_stands_in_quotes) {
    EXPECT_EQ(written_string("text"), "\"text\"");
    EXPECT_EQ(written_string(""), "\"\"");
    EXPECT_EQ(written_as_read(ParserValue::TYPE_STRING, "text"), "\"text\"");
}

TEST(text_writer_values, six_characters_of_a_string_are_escaped) {
    EXPECT_EQ(written_string("\t"), R"("\t")");
    EXPECT_EQ(written_string("\n"), R"("\n")");
    EXPECT_EQ(written_string("\r"), R"("\r")");
    EXPECT_EQ(written_string("\""), R"("\"")");
    EXPECT_EQ(written_string("'"), R"("\'")");
    EXPECT_EQ(written_string("\\"), R"("\\")");
    EXPECT_EQ(written_string("a\tb\nc\rd\"e'f\\g"), R"("a\tb\nc\rd\"e\'f\\g")");
}

TEST(text_writer_values, every_other_byte_of_a_string_is_written_as_it_stands) {
    for (int code = 0; code < 256; ++code) {
        const char byte = static_cast<char>(code);
        if (std::string_view("\t\n\r\"'\\").find(byte) == std::string_view::npos) {
            const std::string text(1, byte);
            EXPECT_EQ(written_string(text), '"' + text + '"') << code;
        }
    }
}

TEST(text_writer_values, a_long_string_is_escaped_throughout) {
    std::string text;
    std::string expected = "\"";
    for (int i = 0; i < 1000; ++i) {
        text += "plain'";
        expected += "plain\\'";
    }
    EXPECT_EQ(written_string(text), expected + "\"");
}

TEST(text_writer_values, a_group_is_always_in_braces) {
    ParserValue nameless(static_cast<ParserGroup*>(nullptr));
    EXPECT_EQ(written(nameless), "{ }");
    ParserValue named(new ParserGroup("g"));
    EXPECT_EQ(written(named), "g { }");
}

TEST(text_writer_values, a_group_is_laid_out_at_the_level_given) {
    auto* group = new ParserGroup("g");
    group->add_entry("a", 0, 0)->add_int(1);
    const ParserValue value(group);
    CoreString text;
    value.get_text(text, true, 2);
    EXPECT_EQ(plain(text), "g {\n        a 1\n    }");
}

TEST(text_writer_values, a_cleared_value_is_empty) {
    ParserValue number(5);
    number.clear();
    EXPECT_EQ(written(number), "");
    ParserValue string{CoreString("text")};
    string.clear();
    EXPECT_EQ(written(string), "\"\"");
}

TEST(text_writer_values, a_value_of_an_unknown_type_is_nothing) {
    EXPECT_EQ(written_as_read(static_cast<ParserValue::Type>(99), "text"), "");
}

TEST(text_writer_values, text_is_appended) {
    CoreString text("before ");
    ParserValue(5).get_text(text, true, 1);
    ParserValue(true).get_text(text, false, 9);
    EXPECT_EQ(plain(text), "before 5yes");
}
