#include "tests/support/parsed_text.h"

#include <gtest/gtest.h>

using namespace std::string_literals;

namespace {

using Words = std::vector<std::string>;

/// The words of a text without entries. Each is a fault: "<line>:<column> <word>".
Words words_of(std::string_view text) {
    constexpr std::string_view before = "ParserGroup.set_text: (";
    constexpr std::string_view value = ") Value without entry: ";
    constexpr std::string_view unknown = ") Unknown word type: ";
    Words words;
    const ParsedText parsed(text);
    for (std::string message : parsed.messages()) {
        message = message.substr(before.size(), message.size() - before.size() - 1);
        for (const std::string_view ending : {value, unknown}) {
            if (const std::size_t place = message.find(ending); place != std::string::npos) {
                message.replace(place, ending.size(), " ");
            }
        }
        words.push_back(message);
    }
    return words;
}

} // namespace

TEST(text_parser_words, blanks_tabs_and_line_breaks_separate) {
    EXPECT_EQ(words_of("1 2\t3\n4\r5 "), (Words{"1:1 1", "1:3 2", "1:5 3", "2:1 4", "3:1 5"}));
}

TEST(text_parser_words, runs_of_white_space_separate_once) {
    EXPECT_EQ(words_of(" \t 1 \t\t 2 "), (Words{"1:4 1", "1:9 2"}));
}

TEST(text_parser_words, vertical_tab_and_form_feed_are_characters_of_a_word) {
    EXPECT_EQ(words_of("1\v2\f3 "), (Words{"1:1 1\v2\f3"}));
}

TEST(text_parser_words, each_delimiter_is_a_word_of_its_own) {
    const ParsedText parsed("{(),:=1 ");
    EXPECT_EQ(parsed.messages(),
              (Words{fault_at(1, 0, "Group without entry"), fault_at(1, 1, "Argument list without entry"),
                     fault_at(1, 2, "Closing an argument list without entry"),
                     fault_at(1, 3, "Entry ',' wrongly placed."), fault_at(1, 4, "Unknown word type: ':'"),
                     fault_at(1, 5, "Entry '=' wrongly placed."), fault_at(1, 7, "Value without entry: 1")}));
}

TEST(text_parser_words, a_closing_brace_is_a_word_of_its_own) {
    ParsedText parsed("a{b 1}c 2");
    ASSERT_EQ(parsed.count(), 2u);
    EXPECT_EQ(parsed.print(), " a { b 1 } c 2");
}

TEST(text_parser_words, each_delimiter_ends_a_word_and_is_left_for_the_next) {
    EXPECT_EQ(words_of("1:2"), (Words{"1:0 1", "1:1 ':'", "1:2 2"}));
    EXPECT_EQ(words_of("1:"), (Words{"1:0 1", "1:1 ':'"}));
    EXPECT_EQ(ParsedText("1{").messages(),
              (Words{fault_at(1, 0, "Value without entry: 1"), fault_at(1, 1, "Group without entry")}));
    EXPECT_EQ(ParsedText("1(").messages(), (Words{fault_at(1, 0, "Value without entry: 1"),
                                                  fault_at(1, 1, "Argument list without entry")}));
    EXPECT_EQ(ParsedText("1)").messages(), (Words{fault_at(1, 0, "Value without entry: 1"),
                                                  fault_at(1, 1, "Closing an argument list without entry")}));
    EXPECT_EQ(ParsedText("1,").messages(),
              (Words{fault_at(1, 0, "Value without entry: 1"), fault_at(1, 1, "Entry ',' wrongly placed.")}));
    EXPECT_EQ(ParsedText("1=").messages(),
              (Words{fault_at(1, 0, "Value without entry: 1"), fault_at(1, 1, "Entry '=' wrongly placed.")}));
    EXPECT_EQ(words_of("1}2 3"), (Words{"1:0 1"}));
}

TEST(text_parser_words, bytes_from_0x80_up_are_characters_of_a_word) {
    EXPECT_EQ(words_of("1\x80\xA0\xFF 2 "), (Words{"1:1 1\x80\xA0\xFF", "1:6 2"}));
}

TEST(text_parser_words, a_nul_is_a_character_of_a_word) {
    EXPECT_EQ(words_of("1\0z 2 "s), (Words{"1:1 1\0z"s, "1:5 2"}));
}

TEST(text_parser_words, a_string_takes_blanks_tabs_and_delimiters) {
    ParsedText parsed("a \"x y\tz{}(),:=\" ");
    EXPECT_EQ(parsed.messages(), Words{});
    ASSERT_EQ(parsed.count(), 1u);
    ASSERT_EQ(parsed.entry(0).get_value_count(), 1u);
    EXPECT_EQ(parsed.entry(0).get_string(0), "x y\tz{}(),:=");
}

TEST(text_parser_words, an_escaped_quote_does_not_end_a_string) {
    ParsedText parsed(R"(a "x\" y" 1 )");
    ASSERT_EQ(parsed.count(), 1u);
    ASSERT_EQ(parsed.entry(0).get_value_count(), 2u);
    EXPECT_EQ(parsed.entry(0).get_string(0), "x\" y");
    EXPECT_EQ(parsed.entry(0).get_int(1), 1);
}

TEST(text_parser_words, a_quote_after_an_escaped_backslash_counts_as_escaped) {
    EXPECT_EQ(words_of(R"("x\\" 1)"
                       "\n"),
              (Words{R"(1:1 '"x\\" 1')"}));
}

TEST(text_parser_words, an_escaped_quote_outside_a_string_does_not_open_one) {
    EXPECT_EQ(words_of(R"(\"x 1 )"), (Words{R"(1:1 '\"x')", "1:5 1"}));
}

TEST(text_parser_words, a_quote_as_the_first_byte_of_the_text_opens_a_string) {
    EXPECT_EQ(words_of("\"x y\" 1 "), (Words{"1:1 \"x y\"", "1:7 1"}));
}

TEST(text_parser_words, quotes_inside_a_word_open_and_close_a_string) {
    EXPECT_EQ(words_of("1\"x y\"2 3 "), (Words{"1:1 1\"x y\"2", "1:9 3"}));
}

TEST(text_parser_words, two_strings_without_a_blank_between_are_one_word) {
    EXPECT_EQ(words_of("\"x\"\"y\" "), (Words{"1:1 \"x\"\"y\""}));
    EXPECT_EQ(words_of("\"x\"y "), (Words{"1:1 '\"x\"y'"}));
}

TEST(text_parser_words, a_line_feed_ends_a_string_and_its_word) {
    EXPECT_EQ(words_of("\"x y\n1 "), (Words{"1:1 '\"x y'", "2:1 1"}));
}

TEST(text_parser_words, a_carriage_return_ends_a_string_and_its_word) {
    EXPECT_EQ(words_of("\"x y\r1 "), (Words{"1:1 '\"x y'", "2:1 1"}));
}

TEST(text_parser_words, the_line_after_a_string_that_was_left_open_is_read_normally) {
    ParsedText parsed("a 1 \"x\nb \"y z\" 2 ");
    EXPECT_EQ(parsed.messages(), (Words{fault_at(1, 5, "Unknown word type: '\"x'")}));
    EXPECT_EQ(parsed.print(), " a 1 b \"y z\" 2");
}

TEST(text_parser_words, a_line_break_after_an_escaped_quote_completes_the_string) {
    ParsedText parsed("a \"x\\\\\"\nb 1 ");
    EXPECT_EQ(parsed.messages(), Words{});
    ASSERT_EQ(parsed.count(), 2u);
    EXPECT_EQ(parsed.entry(0).get_string(0), "x\\");
}

TEST(text_parser_words, a_lone_quote_before_a_line_break_is_no_string) {
    EXPECT_EQ(words_of("\"\n1 "), (Words{"1:1 '\"'", "2:1 1"}));
}

TEST(text_parser_words, a_string_that_is_open_at_the_end_of_the_text_ends_there) {
    EXPECT_EQ(words_of("1 \"x y"), (Words{"1:1 1", "1:2 '\"x y'"}));
}

TEST(text_parser_words, white_space_at_the_end_adds_no_word) {
    EXPECT_EQ(words_of("1 \n\t\r "), (Words{"1:1 1"}));
}

TEST(text_parser_words, comments_are_unknown_words_here) {
    EXPECT_EQ(words_of("// 1 "), (Words{"1:1 '//'", "1:4 1"}));
}
