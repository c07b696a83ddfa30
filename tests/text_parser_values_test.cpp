#include "tests/support/parsed_text.h"
#include "tests/support/plain_text.h"

#include <gtest/gtest.h>

namespace {

using Messages = std::vector<std::string>;

} // namespace

TEST(text_parser_values, each_kind_of_value_gets_its_type) {
    ParsedText parsed("a yes no 12 1.5 \"s\" 0x0102030000000000 ");
    ASSERT_EQ(parsed.count(), 1u);
    ParserEntry& entry = parsed.entry(0);
    ASSERT_EQ(entry.get_value_count(), 6u);
    EXPECT_EQ(entry.get_value_type(0), ParserValue::TYPE_BOOL);
    EXPECT_EQ(entry.get_value_type(1), ParserValue::TYPE_BOOL);
    EXPECT_EQ(entry.get_value_type(2), ParserValue::TYPE_INT);
    EXPECT_EQ(entry.get_value_type(3), ParserValue::TYPE_DOUBLE);
    EXPECT_EQ(entry.get_value_type(4), ParserValue::TYPE_STRING);
    EXPECT_EQ(entry.get_value_type(5), ParserValue::TYPE_BINARY_DATA);
}

TEST(text_parser_values, values_read_as_what_they_say) {
    ParsedText parsed("a yes no -12 1.5 \"s\" 0x01FF00010000 ");
    ASSERT_EQ(parsed.count(), 1u);
    ParserEntry& entry = parsed.entry(0);
    ASSERT_EQ(entry.get_value_count(), 6u);
    EXPECT_TRUE(entry.get_bool(0));
    EXPECT_FALSE(entry.get_bool(1));
    EXPECT_EQ(entry.get_int(2), -12);
    EXPECT_EQ(entry.get_double(3), 1.5);
    EXPECT_EQ(plain(entry.get_string(4)), "s");
    ASSERT_EQ(entry.get_binary_data_size(5), 2u);
    const auto* bytes = static_cast<const unsigned char*>(entry.get_binary_data(5));
    EXPECT_EQ(bytes[0], 0x01);
    EXPECT_EQ(bytes[1], 0xFF);
}

TEST(text_parser_values, values_keep_their_spelling) {
    EXPECT_EQ(ParsedText("a 007 +1 1.50 1E5 12ab .5 1e .5.6 -inf +nan ").print(),
              " a 007 +1 1.50 1E5 12ab .5 1e .5.6 -inf +nan");
}

TEST(text_parser_values, an_upper_case_exponent_alone_is_an_int) {
    ParsedText parsed("a 1E5 1e5 1.E5 ");
    ASSERT_EQ(parsed.count(), 1u);
    EXPECT_EQ(parsed.entry(0).get_value_type(0), ParserValue::TYPE_INT);
    EXPECT_EQ(parsed.entry(0).get_value_type(1), ParserValue::TYPE_DOUBLE);
    EXPECT_EQ(parsed.entry(0).get_value_type(2), ParserValue::TYPE_DOUBLE);
}

TEST(text_parser_values, the_operator_before_the_first_value_is_optional) {
    EXPECT_EQ(ParsedText("a = 1 ").print(), ParsedText("a 1 ").print());
    EXPECT_EQ(ParsedText("a = 1 ").messages(), Messages{});
    EXPECT_EQ(ParsedText("a=1 ").print(), " a 1");
}

TEST(text_parser_values, commas_between_values_are_optional) {
    EXPECT_EQ(ParsedText("a = 1, 2").messages(), Messages{});
    EXPECT_EQ(ParsedText("a = 1, 2").print(), ParsedText("a 1 2").print());
    EXPECT_EQ(ParsedText("a 1,2 3").print(), " a 1 2 3");
}

TEST(text_parser_values, a_comma_may_follow_the_last_value) {
    ParsedText parsed("a 1, b 2 ");
    EXPECT_EQ(parsed.messages(), Messages{});
    EXPECT_EQ(parsed.print(), " a 1 b 2");
}

TEST(text_parser_values, a_comma_may_follow_each_kind_of_value) {
    EXPECT_EQ(ParsedText("a yes, 12, 1.5, \"s\", 0x0000000000, <empty>, 1 ").messages(), Messages{});
}

TEST(text_parser_values, a_comma_before_any_value_is_wrongly_placed_and_drops_the_entry) {
    ParsedText parsed("a , 1");
    EXPECT_EQ(parsed.messages(), (Messages{fault_at(1, 2, "Entry ',' wrongly placed."),
                                           fault_at(1, 4, "Value without entry: 1")}));
    ASSERT_EQ(parsed.count(), 1u);
    EXPECT_FALSE(parsed.entry(0).has_value());
    EXPECT_FALSE(parsed.result());
}

TEST(text_parser_values, a_second_comma_is_wrongly_placed) {
    ParsedText parsed("a 1,, 2 ");
    EXPECT_EQ(parsed.messages(), (Messages{fault_at(1, 4, "Entry ',' wrongly placed."),
                                           fault_at(1, 7, "Value without entry: 2")}));
    EXPECT_EQ(parsed.print(), " a 1");
}

TEST(text_parser_values, a_comma_after_the_operator_is_wrongly_placed) {
    EXPECT_EQ(ParsedText("a =, 1 ").messages(), (Messages{fault_at(1, 3, "Entry ',' wrongly placed."),
                                                          fault_at(1, 6, "Value without entry: 1")}));
}

TEST(text_parser_values, a_comma_after_a_fault_is_wrongly_placed) {
    EXPECT_EQ(ParsedText("a 1 :, 2 ").messages(),
              (Messages{fault_at(1, 4, "Unknown word type: ':'"), fault_at(1, 5, "Entry ',' wrongly placed."),
                        fault_at(1, 8, "Value without entry: 2")}));
}

TEST(text_parser_values, a_comma_after_a_group_goes_by_the_last_kind_before_it) {
    EXPECT_EQ(ParsedText("a { b 1 }, c 2 ").messages(),
              (Messages{fault_at(1, 9, "Entry ',' wrongly placed.")}));
    EXPECT_EQ(ParsedText("a 1 { b 1 }, c 2 ").messages(), Messages{});
}

TEST(text_parser_values, an_operator_after_a_value_is_wrongly_placed_and_drops_the_entry) {
    ParsedText parsed("a 1 = 2 ");
    EXPECT_EQ(parsed.messages(), (Messages{fault_at(1, 4, "Entry '=' wrongly placed."),
                                           fault_at(1, 7, "Value without entry: 2")}));
    EXPECT_EQ(parsed.print(), " a 1");
}

TEST(text_parser_values, a_second_operator_is_wrongly_placed) {
    EXPECT_EQ(ParsedText("a == 1 ").messages(), (Messages{fault_at(1, 3, "Entry '=' wrongly placed."),
                                                          fault_at(1, 6, "Value without entry: 1")}));
}

TEST(text_parser_values, an_operator_after_a_comma_is_wrongly_placed) {
    EXPECT_EQ(ParsedText("a 1,= 2 ").messages().front(), fault_at(1, 4, "Entry '=' wrongly placed."));
}

TEST(text_parser_values, an_operator_before_any_name_is_wrongly_placed) {
    EXPECT_EQ(ParsedText("= a 1 ").messages(), (Messages{fault_at(1, 0, "Entry '=' wrongly placed.")}));
}

TEST(text_parser_values, an_operator_after_a_name_in_fault_is_wrongly_placed) {
    ParsedText parsed("a b = 1 ");
    EXPECT_EQ(parsed.messages(), (Messages{fault_at(1, 3, "Entry 'b' has no value."),
                                           fault_at(1, 4, "Entry '=' wrongly placed."),
                                           fault_at(1, 7, "Value without entry: 1")}));
}

TEST(text_parser_values, an_operator_after_a_group_goes_by_the_last_kind_before_it) {
    EXPECT_EQ(ParsedText("a { b 1 } = 1 ").messages(), (Messages{fault_at(1, 13, "Value without entry: 1")}));
}

TEST(text_parser_values, a_value_without_an_entry_is_a_fault) {
    ParsedText parsed("1 yes \"x\\ty\" a 2 ");
    EXPECT_EQ(parsed.messages(),
              (Messages{fault_at(1, 1, "Value without entry: 1"), fault_at(1, 3, "Value without entry: yes"),
                        fault_at(1, 7, "Value without entry: \"x\ty\"")}));
    EXPECT_EQ(parsed.print(), " a 2");
}

TEST(text_parser_values, the_empty_tag_without_an_entry_is_a_value_without_an_entry) {
    EXPECT_EQ(ParsedText("<empty> a 1 ").messages(),
              (Messages{fault_at(1, 1, "Value without entry: <empty>")}));
}

TEST(text_parser_values, a_colon_is_an_unknown_word_that_keeps_the_entry) {
    ParsedText parsed("a:1");
    EXPECT_EQ(parsed.messages(), (Messages{fault_at(1, 1, "Unknown word type: ':'")}));
    EXPECT_EQ(parsed.print(), " a 1");
    EXPECT_TRUE(parsed.result());
}

TEST(text_parser_values, a_malformed_word_is_an_unknown_word_that_keeps_the_entry) {
    ParsedText parsed("a 1 ?? 2 @ 3 #1 4 # 5 a. 6 ");
    EXPECT_EQ(
        parsed.messages(),
        (Messages{fault_at(1, 5,
                           "Unknown word type: '?"
                           "?'"),
                  fault_at(1, 10, "Unknown word type: '@'"), fault_at(1, 14, "Unknown word type: '#1'"),
                  fault_at(1, 19, "Unknown word type: '#'"), fault_at(1, 23, "Unknown word type: 'a.'")}));
    EXPECT_EQ(parsed.print(), " a 1 2 3 4 5 6");
}

TEST(text_parser_values, a_string_of_two_quotes_is_empty) {
    ParsedText parsed("a \"\" ");
    ASSERT_EQ(parsed.count(), 1u);
    ASSERT_EQ(parsed.entry(0).get_value_count(), 1u);
    EXPECT_TRUE(parsed.entry(0).is_value_string(0));
    EXPECT_EQ(plain(parsed.entry(0).get_string(0)), "");
}

TEST(text_parser_values, words_that_look_like_others_in_quotes_are_strings) {
    ParsedText parsed("a \"=\" \",\" \"yes\" \"<empty>\" \"1\" \"0x12\" ");
    EXPECT_EQ(parsed.messages(), Messages{});
    ASSERT_EQ(parsed.count(), 1u);
    ASSERT_EQ(parsed.entry(0).get_value_count(), 6u);
    for (unsigned int i = 0; i < 6; ++i) {
        EXPECT_TRUE(parsed.entry(0).is_value_string(i)) << i;
    }
}

TEST(text_parser_values, names_are_never_values) {
    ParsedText parsed("a inf 1 ");
    EXPECT_EQ(parsed.messages(), (Messages{fault_at(1, 3, "Entry 'inf' has no value.")}));
    EXPECT_EQ(parsed.print(), " a 1");
}
