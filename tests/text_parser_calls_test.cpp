#include "tests/support/parsed_text.h"
#include "tests/support/plain_text.h"

#include <gtest/gtest.h>

namespace {

using Messages = std::vector<std::string>;

} // namespace

TEST(text_parser_calls, values_in_parentheses_make_a_function_call) {
    ParsedText parsed("f(1, 2) ");
    EXPECT_EQ(parsed.messages(), Messages{});
    ASSERT_EQ(parsed.count(), 1u);
    EXPECT_EQ(parsed.entry(0).get_type(), ParserEntry::TYPE_FUNCTION_CALL);
    ASSERT_EQ(parsed.entry(0).get_value_count(), 2u);
    EXPECT_EQ(parsed.entry(0).get_int(0), 1);
    EXPECT_EQ(parsed.entry(0).get_int(1), 2);
    EXPECT_TRUE(parsed.result());
}

TEST(text_parser_calls, a_call_is_counted_among_the_ordinary_entries_until_the_indexes_are_rebuilt) {
    ParsedText parsed("a 1 f(1) ");
    EXPECT_EQ(parsed.group().get_entry_count(), 2u);
    EXPECT_EQ(parsed.group().get_entry("f"), &parsed.entry(1));
    parsed.group().move_entry(0, 0);
    EXPECT_EQ(parsed.group().get_entry_count(), 1u);
    EXPECT_EQ(parsed.group().get_keyword("f"), &parsed.entry(1));
}

TEST(text_parser_calls, blanks_may_stand_around_the_parentheses) {
    ParsedText parsed("f ( 1 2 ) g ( ) ");
    EXPECT_EQ(parsed.messages(), Messages{});
    EXPECT_EQ(parsed.print(), " f(1, 2) g()");
}

TEST(text_parser_calls, a_call_may_have_no_values) {
    ParsedText parsed("f()");
    EXPECT_EQ(parsed.messages(), Messages{});
    ASSERT_EQ(parsed.count(), 1u);
    EXPECT_EQ(parsed.entry(0).get_type(), ParserEntry::TYPE_FUNCTION_CALL);
    EXPECT_FALSE(parsed.entry(0).has_value());
    EXPECT_TRUE(parsed.result());
}

TEST(text_parser_calls, an_operator_may_stand_before_the_parenthesis) {
    EXPECT_EQ(ParsedText("f = (1) ").messages(), Messages{});
    EXPECT_EQ(ParsedText("f = (1) ").print(), " f(1)");
}

TEST(text_parser_calls, an_operator_may_follow_the_opening_parenthesis_of_a_call) {
    EXPECT_EQ(ParsedText("f (= 1) ").messages(), Messages{});
}

TEST(text_parser_calls, a_comma_after_the_opening_parenthesis_is_wrongly_placed) {
    EXPECT_EQ(ParsedText("f (, 1) ").messages(),
              (Messages{fault_at(1, 3, "Entry ',' wrongly placed."), fault_at(1, 5, "Value without entry: 1"),
                        fault_at(1, 6, "Closing an argument list without entry")}));
}

TEST(text_parser_calls, an_array_or_a_template_may_be_called) {
    EXPECT_EQ(ParsedText("f[2](1) g<t>(2) ").print(), " f[2](1) g<t>(2)");
    EXPECT_EQ(ParsedText("f[2](1) g<t>(2) ").messages(), Messages{});
}

TEST(text_parser_calls, a_value_after_a_call_needs_a_name) {
    ParsedText parsed("f(1, 2) 3");
    EXPECT_EQ(parsed.messages(), (Messages{fault_at(1, 8, "Value without entry: 3")}));
    EXPECT_EQ(parsed.print(), " f(1, 2)");
    EXPECT_FALSE(parsed.result());
}

TEST(text_parser_calls, a_name_after_a_call_without_values_needs_no_value_before) {
    EXPECT_EQ(ParsedText("f() g 1 ").messages(), Messages{});
}

TEST(text_parser_calls, a_call_left_open_takes_values_as_before) {
    ParsedText parsed("f(1 2 g 3 ");
    EXPECT_EQ(parsed.messages(), Messages{});
    EXPECT_EQ(parsed.print(), " f(1, 2) g 3");
}

TEST(text_parser_calls, the_empty_tag_in_a_call_stores_nothing) {
    EXPECT_EQ(ParsedText("f(<empty>) ").print(), " f()");
}

TEST(text_parser_calls, a_call_may_hold_a_group_which_ends_it) {
    ParsedText parsed("f(1, {a 1}) ");
    EXPECT_EQ(parsed.messages(), (Messages{fault_at(1, 10, "Closing an argument list without entry")}));
    EXPECT_EQ(parsed.print(), " f(1, { a 1 })");
}

TEST(text_parser_calls, an_argument_list_after_a_group_is_without_entry) {
    ParsedText parsed("f { } (1) ");
    EXPECT_EQ(parsed.messages(), (Messages{fault_at(1, 6, "Argument list without entry"),
                                           fault_at(1, 7, "Value without entry: 1"),
                                           fault_at(1, 8, "Closing an argument list without entry")}));
}

TEST(text_parser_calls, an_argument_list_without_entry_is_a_fault) {
    EXPECT_EQ(ParsedText("( ").messages(), (Messages{fault_at(1, 0, "Argument list without entry")}));
}

TEST(text_parser_calls, values_before_an_argument_list_are_a_fault_that_drops_the_entry) {
    ParsedText parsed("a 1 (2)");
    EXPECT_EQ(parsed.messages(), (Messages{fault_at(1, 4, "Cannot mix argument list with entry values"),
                                           fault_at(1, 5, "Value without entry: 2"),
                                           fault_at(1, 6, "Closing an argument list without entry")}));
    EXPECT_EQ(parsed.print(), " a 1");
    EXPECT_EQ(parsed.entry(0).get_type(), ParserEntry::TYPE_ENTRY);
}

TEST(text_parser_calls, the_empty_tag_before_an_argument_list_is_no_value) {
    ParsedText parsed("a <empty> (2) ");
    EXPECT_EQ(parsed.messages(), Messages{});
    EXPECT_EQ(parsed.print(), " a(2)");
}

TEST(text_parser_calls, an_argument_list_inside_an_argument_list_is_a_fault_that_drops_the_entry) {
    ParsedText parsed("f((1) ");
    EXPECT_EQ(parsed.messages(), (Messages{fault_at(1, 2, "Argument list inside an argument list"),
                                           fault_at(1, 3, "Value without entry: 1"),
                                           fault_at(1, 4, "Closing an argument list without entry")}));
    EXPECT_EQ(parsed.print(), " f()");
}

TEST(text_parser_calls, values_are_found_before_an_argument_list_inside_an_argument_list) {
    EXPECT_EQ(ParsedText("f(1 (2)) ").messages().front(),
              fault_at(1, 4, "Cannot mix argument list with entry values"));
}

TEST(text_parser_calls, values_are_found_before_a_call_on_a_keyword) {
    EXPECT_EQ(ParsedText("#k 1 (2) ").messages().front(),
              fault_at(1, 5, "Cannot mix argument list with entry values"));
}

TEST(text_parser_calls, a_call_on_a_keyword_is_a_fault_that_drops_the_entry) {
    ParsedText parsed("#k (1)");
    EXPECT_EQ(parsed.messages(),
              (Messages{fault_at(1, 3, "Function call on keyword"), fault_at(1, 4, "Value without entry: 1"),
                        fault_at(1, 5, "Closing an argument list without entry")}));
    EXPECT_EQ(parsed.print(), " #k <empty>");
    EXPECT_EQ(parsed.entry(0).get_type(), ParserEntry::TYPE_KEYWORD);
}

TEST(text_parser_calls, closing_without_entry_is_a_fault) {
    EXPECT_EQ(ParsedText(") ").messages(),
              (Messages{fault_at(1, 0, "Closing an argument list without entry")}));
    EXPECT_EQ(ParsedText("f()) ").messages(),
              (Messages{fault_at(1, 3, "Closing an argument list without entry")}));
}

TEST(text_parser_calls, closing_an_entry_that_is_no_call_is_a_fault_that_drops_it) {
    ParsedText parsed("a 1 ) 2 ");
    EXPECT_EQ(parsed.messages(), (Messages{fault_at(1, 4, "Closing an argument list in a non function call"),
                                           fault_at(1, 7, "Value without entry: 2")}));
    EXPECT_EQ(parsed.print(), " a 1");
}

TEST(text_parser_calls, closing_a_keyword_is_closing_no_call) {
    EXPECT_EQ(ParsedText("#k ) ").messages(),
              (Messages{fault_at(1, 3, "Closing an argument list in a non function call")}));
}

TEST(text_parser_calls, a_name_inside_a_call_starts_an_entry_that_the_parenthesis_does_not_close) {
    ParsedText parsed("f(1, g 2) ");
    EXPECT_EQ(parsed.messages(),
              (Messages{fault_at(1, 8, "Closing an argument list in a non function call")}));
    EXPECT_EQ(parsed.print(), " f(1) g 2");
}

TEST(text_parser_calls, a_name_as_the_first_argument_has_no_value) {
    ParsedText parsed("f(a) ");
    EXPECT_EQ(parsed.messages(), (Messages{fault_at(1, 2, "Entry 'a' has no value.")}));
    EXPECT_EQ(parsed.print(), " f()");
}

TEST(text_parser_calls, the_last_kind_stays_over_parentheses) {
    EXPECT_TRUE(ParsedText("f()").result());
    EXPECT_EQ(ParsedText("f(1), g 2 ").messages(), Messages{});
    EXPECT_EQ(ParsedText("f(), g 2 ").messages(), (Messages{fault_at(1, 3, "Entry ',' wrongly placed.")}));
    EXPECT_FALSE(ParsedText("f(<empty>)").result());
}
