#include "tests/support/parsed_text.h"

#include <gtest/gtest.h>

#include <utility>

namespace {

using Messages = std::vector<std::string>;
using Place = std::pair<unsigned int, unsigned int>;

Place place_of(const ParserEntry& entry) {
    return {entry.get_line(), entry.get_column()};
}

/// The place of the first entry of a text.
Place first_place(std::string_view text) {
    ParsedText parsed(text);
    return parsed.count() == 0 ? Place{9999, 9999} : place_of(parsed.entry(0));
}

} // namespace

TEST(text_parser_places, lines_count_from_1) {
    EXPECT_EQ(first_place("a 1 ").first, 1u);
}

TEST(text_parser_places, a_word_before_a_blank_has_the_column_counted_from_1) {
    EXPECT_EQ(first_place("a 1 "), Place(1, 1));
    EXPECT_EQ(first_place("  abc 1 "), Place(1, 3));
}

TEST(text_parser_places, a_word_before_a_tab_has_the_column_counted_from_1) {
    EXPECT_EQ(first_place(" abc\t1 "), Place(1, 2));
}

TEST(text_parser_places, a_word_before_a_line_break_has_the_column_counted_from_1) {
    EXPECT_EQ(first_place(" abc\n1 "), Place(1, 2));
    EXPECT_EQ(first_place(" abc\r1 "), Place(1, 2));
}

TEST(text_parser_places, a_word_before_a_delimiter_has_the_column_counted_from_0) {
    EXPECT_EQ(first_place("a{} "), Place(1, 0));
    EXPECT_EQ(first_place("  abc{} "), Place(1, 2));
    EXPECT_EQ(first_place("  abc=1 "), Place(1, 2));
    EXPECT_EQ(first_place("  abc(1) "), Place(1, 2));
    EXPECT_EQ(first_place("  abc:1 "), Place(1, 2));
    EXPECT_EQ(first_place("  abc,1 "), Place(1, 2));
    EXPECT_EQ(first_place("  abc) "), Place(1, 2));
    EXPECT_EQ(first_place("  abc} "), Place(1, 2));
}

TEST(text_parser_places, the_same_place_is_reported_one_apart_before_a_brace_and_before_a_blank) {
    const Place before_brace = first_place("   abc{ b 1 }");
    const Place before_blank = first_place("   abc { b 1 }");
    EXPECT_EQ(before_blank.second, before_brace.second + 1);
}

TEST(text_parser_places, a_delimiter_has_the_column_counted_from_0) {
    EXPECT_EQ(ParsedText("{").messages(), (Messages{fault_at(1, 0, "Group without entry")}));
    EXPECT_EQ(ParsedText("  { ").messages(), (Messages{fault_at(1, 2, "Group without entry")}));
    EXPECT_EQ(ParsedText("1 {").messages().back(), fault_at(1, 2, "Group without entry"));
    EXPECT_EQ(ParsedText("1{").messages().back(), fault_at(1, 1, "Group without entry"));
}

TEST(text_parser_places, the_last_word_of_a_text_has_the_column_counted_from_0) {
    EXPECT_EQ(ParsedText("1").messages(), (Messages{fault_at(1, 0, "Value without entry: 1")}));
    EXPECT_EQ(ParsedText("  12").messages(), (Messages{fault_at(1, 2, "Value without entry: 12")}));
}

TEST(text_parser_places, a_last_word_before_white_space_has_the_column_counted_from_1) {
    EXPECT_EQ(ParsedText("  12 ").messages(), (Messages{fault_at(1, 3, "Value without entry: 12")}));
}

TEST(text_parser_places, a_string_ended_by_a_line_break_has_the_column_counted_from_1) {
    EXPECT_EQ(ParsedText("  \"x\n").messages(), (Messages{fault_at(1, 3, "Unknown word type: '\"x'")}));
    EXPECT_EQ(ParsedText("  \"x\r").messages(), (Messages{fault_at(1, 3, "Unknown word type: '\"x'")}));
}

TEST(text_parser_places, a_string_left_open_at_the_end_has_the_column_counted_from_0) {
    EXPECT_EQ(ParsedText("  \"x").messages(), (Messages{fault_at(1, 2, "Unknown word type: '\"x'")}));
}

TEST(text_parser_places, a_string_before_a_delimiter_has_the_column_counted_from_0) {
    EXPECT_EQ(ParsedText("  \"x y\",").messages().front(), fault_at(1, 2, "Value without entry: \"x y\""));
}

TEST(text_parser_places, columns_go_on_after_a_delimiter) {
    EXPECT_EQ(ParsedText("{{  {{1,2 ").messages(),
              (Messages{fault_at(1, 0, "Group without entry"), fault_at(1, 1, "Group without entry"),
                        fault_at(1, 4, "Group without entry"), fault_at(1, 5, "Group without entry"),
                        fault_at(1, 6, "Value without entry: 1"), fault_at(1, 7, "Entry ',' wrongly placed."),
                        fault_at(1, 9, "Value without entry: 2")}));
}

TEST(text_parser_places, a_line_feed_starts_a_line) {
    EXPECT_EQ(first_place("\n\n  a 1 "), Place(3, 3));
    EXPECT_EQ(first_place("\n\n  a{} "), Place(3, 2));
}

TEST(text_parser_places, a_carriage_return_starts_a_line) {
    EXPECT_EQ(first_place("\r\r  a 1 "), Place(3, 3));
}

TEST(text_parser_places, carriage_return_and_line_feed_together_count_two_lines) {
    ParsedText parsed("a 1\r\nb 2\r\nc 3\r\n");
    ASSERT_EQ(parsed.count(), 3u);
    EXPECT_EQ(place_of(parsed.entry(0)), Place(1, 1));
    EXPECT_EQ(place_of(parsed.entry(1)), Place(3, 1));
    EXPECT_EQ(place_of(parsed.entry(2)), Place(5, 1));
}

TEST(text_parser_places, a_line_break_that_ends_a_word_counts) {
    ParsedText parsed("a\n1\nb\n2\n");
    ASSERT_EQ(parsed.count(), 2u);
    EXPECT_EQ(place_of(parsed.entry(1)), Place(3, 1));
}

TEST(text_parser_places, a_line_break_that_ends_a_string_counts) {
    ParsedText parsed("a 1 \"x\r\nb 2 ");
    ASSERT_EQ(parsed.count(), 2u);
    EXPECT_EQ(place_of(parsed.entry(1)), Place(3, 1));
}

TEST(text_parser_places, a_tab_is_one_column) {
    EXPECT_EQ(first_place("\t\ta 1 "), Place(1, 3));
}

TEST(text_parser_places, columns_count_bytes) {
    ParsedText parsed("\xC3\xA9\xC3\xA9 a 1 ");
    ASSERT_EQ(parsed.count(), 1u);
    EXPECT_EQ(place_of(parsed.entry(0)), Place(1, 6));
}

TEST(text_parser_places, the_bytes_of_a_string_count_as_columns) {
    ParsedText parsed(R"(a "x\" y" b 1 )");
    ASSERT_EQ(parsed.count(), 2u);
    EXPECT_EQ(place_of(parsed.entry(1)), Place(1, 11));
}

TEST(text_parser_places, entries_of_nested_groups_keep_their_places) {
    ParsedText parsed("a {\n  b {\n    c 1\n  }\n}\nd 2\n");
    ASSERT_EQ(parsed.count(), 2u);
    ParserGroup& outer = *parsed.entry(0).get_group(0);
    ASSERT_EQ(outer.get_entries().get_count(), 1u);
    ParserEntry& b = *outer.get_entries()[0];
    EXPECT_EQ(place_of(b), Place(2, 3));
    EXPECT_EQ(place_of(*b.get_group(0)->get_entries()[0]), Place(3, 5));
    EXPECT_EQ(place_of(parsed.entry(1)), Place(6, 1));
}

TEST(text_parser_places, the_place_of_a_name_is_that_of_its_first_character_whatever_suffix_follows) {
    EXPECT_EQ(ParsedText("1 x<y> ").messages().back(), fault_at(1, 3, "Entry 'x' has no value."));
}
