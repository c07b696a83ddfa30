#include "tests/support/parsed_text.h"
#include "tests/support/plain_text.h"

#include <gtest/gtest.h>

namespace {

using Messages = std::vector<std::string>;

} // namespace

TEST(text_parser_groups, braces_after_a_name_hold_a_group) {
    ParsedText parsed("a { b 1 } c 2");
    EXPECT_EQ(parsed.messages(), Messages{});
    ASSERT_EQ(parsed.count(), 2u);
    ASSERT_TRUE(parsed.entry(0).is_group());
    ParserGroup& group = *parsed.entry(0).get_group(0);
    ASSERT_EQ(group.get_entries().get_count(), 1u);
    EXPECT_EQ(plain(group.get_entries()[0]->get_name()), "b");
    EXPECT_EQ(group.get_entries()[0]->get_int(0), 1);
    EXPECT_EQ(parsed.entry(1).get_int(0), 2);
    EXPECT_TRUE(parsed.result());
}

TEST(text_parser_groups, a_group_has_no_name_and_knows_its_entry) {
    ParsedText parsed("a { b 1 }");
    ASSERT_EQ(parsed.count(), 1u);
    ParserGroup& group = *parsed.entry(0).get_group(0);
    EXPECT_TRUE(group.get_name().is_empty());
    EXPECT_EQ(group.get_source_entry(), &parsed.entry(0));
}

TEST(text_parser_groups, an_operator_may_stand_before_a_group) {
    ParsedText parsed("a = { b 1 } ");
    EXPECT_EQ(parsed.messages(), Messages{});
    EXPECT_EQ(parsed.print(), " a { b 1 }");
}

TEST(text_parser_groups, a_group_may_follow_values) {
    ParsedText parsed("a 1 \"s\" { b 1 } ");
    EXPECT_EQ(parsed.messages(), Messages{});
    EXPECT_EQ(parsed.print(), " a 1 \"s\" { b 1 }");
}

TEST(text_parser_groups, a_keyword_may_hold_a_group) {
    EXPECT_EQ(ParsedText("#k { b 1 } ").print(), " #k { b 1 }");
}

TEST(text_parser_groups, an_array_or_a_template_may_hold_a_group) {
    EXPECT_EQ(ParsedText("a[2] { b 1 } c<t> { d 2 } ").print(), " a[2] { b 1 } c<t> { d 2 }");
}

TEST(text_parser_groups, a_group_may_be_empty) {
    ParsedText parsed("a {} b { }");
    EXPECT_EQ(parsed.messages(), Messages{});
    EXPECT_EQ(parsed.print(), " a { } b { }");
}

TEST(text_parser_groups, groups_nest) {
    ParsedText parsed("a{b{c{d 1}e 2}f 3}g 4 ");
    EXPECT_EQ(parsed.messages(), Messages{});
    EXPECT_EQ(parsed.print(), " a { b { c { d 1 } e 2 } f 3 } g 4");
}

TEST(text_parser_groups, a_value_after_a_group_needs_a_name) {
    ParsedText parsed("a { b 1 } 2 ");
    EXPECT_EQ(parsed.messages(), (Messages{fault_at(1, 11, "Value without entry: 2")}));
    EXPECT_EQ(parsed.print(), " a { b 1 }");
}

TEST(text_parser_groups, a_second_group_after_a_group_needs_a_name) {
    ParsedText parsed("a { b 1 } { c 2 } ");
    EXPECT_EQ(parsed.messages(), (Messages{fault_at(1, 10, "Group without entry")}));
    EXPECT_EQ(parsed.print(), " a { b 1 } c 2");
}

TEST(text_parser_groups, a_group_without_an_entry_is_read_as_part_of_the_group_around_it) {
    ParsedText parsed("{ a 1 } b 2 ");
    EXPECT_EQ(parsed.messages(), (Messages{fault_at(1, 0, "Group without entry")}));
    EXPECT_EQ(parsed.print(), " a 1");
    EXPECT_TRUE(parsed.result());
}

TEST(text_parser_groups, each_group_starts_without_an_entry) {
    EXPECT_EQ(ParsedText("a 1 { 2 } ").messages(), (Messages{fault_at(1, 7, "Value without entry: 2")}));
    EXPECT_EQ(ParsedText("a 1 { = 2 } ").messages().front(), fault_at(1, 6, "Entry '=' wrongly placed."));
    EXPECT_EQ(ParsedText("a 1 { , b 2 } ").messages().front(), fault_at(1, 6, "Entry ',' wrongly placed."));
}

TEST(text_parser_groups, a_name_right_after_an_opening_brace_needs_no_value_before) {
    EXPECT_EQ(ParsedText("a { b 1 }").messages(), Messages{});
}

TEST(text_parser_groups, a_name_before_a_closing_brace_is_an_entry_without_values) {
    ParsedText parsed("a { b } c 1 ");
    EXPECT_EQ(parsed.messages(), Messages{});
    EXPECT_EQ(parsed.print(), " a { b <empty> } c 1");
}

TEST(text_parser_groups, a_group_left_open_at_the_end_is_accepted) {
    ParsedText parsed("a { b 1");
    EXPECT_EQ(parsed.messages(), Messages{});
    EXPECT_EQ(parsed.print(), " a { b 1 }");
    EXPECT_TRUE(parsed.result());
}

TEST(text_parser_groups, a_group_opened_by_the_last_byte_is_empty) {
    ParsedText parsed("a {");
    EXPECT_EQ(parsed.messages(), Messages{});
    EXPECT_EQ(parsed.print(), " a { }");
    EXPECT_TRUE(parsed.result());
}

TEST(text_parser_groups, the_result_of_a_group_left_open_is_ignored) {
    ParsedText parsed("a { b 1 c");
    EXPECT_EQ(parsed.messages(), (Messages{fault_at(1, 8, "Entry 'c' has no value.")}));
    EXPECT_TRUE(parsed.result());
}

TEST(text_parser_groups, a_closing_brace_at_the_top_ends_the_text) {
    ParsedText parsed("a 1 } b 2 : ");
    EXPECT_EQ(parsed.messages(), Messages{});
    EXPECT_EQ(parsed.print(), " a 1");
    EXPECT_TRUE(parsed.result());
}

TEST(text_parser_groups, a_text_of_one_closing_brace_is_true) {
    ParsedText parsed("}");
    EXPECT_EQ(parsed.messages(), Messages{});
    EXPECT_EQ(parsed.count(), 0u);
    EXPECT_TRUE(parsed.result());
}

TEST(text_parser_groups, a_closing_brace_ends_the_text_with_true_even_after_a_fault) {
    ParsedText parsed("a : }");
    EXPECT_EQ(parsed.messages(), (Messages{fault_at(1, 2, "Unknown word type: ':'")}));
    EXPECT_TRUE(parsed.result());
}

TEST(text_parser_groups, a_brace_too_many_after_a_group_ends_the_text) {
    EXPECT_EQ(ParsedText("a { b 1 } } c 2 ").print(), " a { b 1 }");
}

TEST(text_parser_groups, entries_of_a_group_are_listed_by_kind) {
    ParsedText parsed("a { b 1 #k 2 c 3 }");
    ASSERT_EQ(parsed.count(), 1u);
    ParserGroup& group = *parsed.entry(0).get_group(0);
    EXPECT_EQ(group.get_entries().get_count(), 3u);
    EXPECT_EQ(group.get_entry_count(), 2u);
    EXPECT_EQ(plain(group.get_entry(1)->get_name()), "c");
    EXPECT_NE(group.get_keyword("#k"), nullptr);
}

TEST(text_parser_groups, a_fault_inside_a_group_does_not_leave_it) {
    ParsedText parsed("a { : b 1 , , c 2 } d 3 ");
    EXPECT_EQ(parsed.messages(), (Messages{fault_at(1, 4, "Unknown word type: ':'"),
                                           fault_at(1, 12, "Entry ',' wrongly placed.")}));
    EXPECT_EQ(parsed.print(), " a { b 1 c 2 } d 3");
}
