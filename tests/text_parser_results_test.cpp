#include "tests/support/parsed_text.h"
#include "tests/support/plain_text.h"

#include <gtest/gtest.h>

namespace {

using Messages = std::vector<std::string>;

bool result_of(std::string_view text) {
    return ParsedText(text).result();
}

} // namespace

TEST(text_parser_results, an_empty_text_is_false_and_leaves_the_group_unchanged) {
    ParserGroup group("g");
    group.add_entry("a", 0, 0)->add_int(1);
    RecordingLog log;
    EXPECT_FALSE(group.set_text("", CoreVersion(1.2), nullptr));
    EXPECT_EQ(written(group), "g { a 1 }");
    EXPECT_TRUE(log.is_empty());
}

TEST(text_parser_results, a_text_of_white_space_is_false_and_adds_nothing) {
    for (const char* text : {" ", "\n", "\r\n", "\t", "  \n \t\r\n  "}) {
        ParsedText parsed(text);
        EXPECT_FALSE(parsed.result());
        EXPECT_EQ(parsed.count(), 0u);
        EXPECT_EQ(parsed.messages(), Messages{});
    }
}

TEST(text_parser_results, a_text_that_ends_with_a_value_is_true) {
    EXPECT_TRUE(result_of("a 1"));
    EXPECT_TRUE(result_of("a yes"));
    EXPECT_TRUE(result_of("a 1.5"));
    EXPECT_TRUE(result_of("a \"s\""));
    EXPECT_TRUE(result_of("a 0x0000000000"));
}

TEST(text_parser_results, a_text_that_ends_with_the_empty_tag_is_false_with_its_entries_complete) {
    ParsedText parsed("a 1 b <empty>");
    EXPECT_FALSE(parsed.result());
    EXPECT_EQ(parsed.print(), " a 1 b <empty>");
    EXPECT_EQ(parsed.messages(), Messages{});
}

TEST(text_parser_results, white_space_after_the_empty_tag_does_not_change_the_result) {
    EXPECT_FALSE(result_of("a <empty>\n"));
    EXPECT_FALSE(result_of("a <empty>  \n  "));
}

TEST(text_parser_results, white_space_after_a_value_does_not_change_the_result) {
    EXPECT_TRUE(result_of("a 1  \n  "));
}

TEST(text_parser_results, the_empty_tag_before_the_last_word_does_not_change_the_result) {
    EXPECT_TRUE(result_of("a <empty> b 1"));
    EXPECT_TRUE(result_of("a <empty>, "));
}

TEST(text_parser_results, a_text_that_ends_with_an_operator_or_a_comma_is_true) {
    EXPECT_TRUE(result_of("a ="));
    EXPECT_TRUE(result_of("a 1,"));
}

TEST(text_parser_results, a_fault_on_the_last_word_is_false) {
    EXPECT_FALSE(result_of("a 1 b"));
    EXPECT_FALSE(result_of("a 1 :"));
    EXPECT_FALSE(result_of("a 1 ="));
    EXPECT_FALSE(result_of("a 1,,"));
    EXPECT_FALSE(result_of("a { } 1"));
    EXPECT_FALSE(result_of("a { } {"));
    EXPECT_FALSE(result_of("a { } ("));
    EXPECT_FALSE(result_of("a 1 )"));
    EXPECT_FALSE(result_of("a 1 x<y<z>>"));
}

TEST(text_parser_results, a_fault_before_the_last_word_does_not_change_the_result) {
    EXPECT_TRUE(result_of(": a 1"));
    EXPECT_TRUE(result_of("a : 1"));
    EXPECT_TRUE(result_of("1 a 1"));
}

TEST(text_parser_results, a_fault_stays_the_last_kind_over_a_group) {
    EXPECT_FALSE(result_of("a : { b 1 }"));
    EXPECT_TRUE(result_of("a { b 1 }"));
}

TEST(text_parser_results, a_text_that_ends_with_a_closing_brace_of_a_group_goes_by_the_last_kind_before_it) {
    EXPECT_TRUE(result_of("a { : }"));
    EXPECT_TRUE(result_of("a { b <empty> }"));
    EXPECT_FALSE(result_of("a <empty> { b 1 }"));
}

TEST(text_parser_results, entries_made_before_a_fault_stay) {
    EXPECT_EQ(ParsedText("a 1 b 2 : , ) ( = 3").print(), " a 1 b 2");
}
