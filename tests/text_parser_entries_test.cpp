#include "tests/support/parsed_text.h"
#include "tests/support/plain_text.h"

#include <gtest/gtest.h>

namespace {

using Messages = std::vector<std::string>;

} // namespace

TEST(text_parser_entries, a_name_and_a_value_make_an_entry) {
    ParsedText parsed("width 12 ");
    ASSERT_EQ(parsed.count(), 1u);
    ParserEntry& entry = parsed.entry(0);
    EXPECT_EQ(plain(entry.get_name()), "width");
    EXPECT_EQ(entry.get_type(), ParserEntry::TYPE_ENTRY);
    EXPECT_FALSE(entry.is_array());
    EXPECT_FALSE(entry.is_template());
    ASSERT_EQ(entry.get_value_count(), 1u);
    EXPECT_EQ(entry.get_int(0), 12);
    EXPECT_EQ(parsed.messages(), Messages{});
    EXPECT_TRUE(parsed.result());
}

TEST(text_parser_entries, a_keyword_makes_a_keyword_entry) {
    ParsedText parsed("#version 1 ");
    ASSERT_EQ(parsed.count(), 1u);
    EXPECT_EQ(plain(parsed.entry(0).get_name()), "#version");
    EXPECT_EQ(parsed.entry(0).get_type(), ParserEntry::TYPE_KEYWORD);
    EXPECT_EQ(parsed.group().get_entry_count(), 0u);
    EXPECT_EQ(parsed.group().get_keyword("#version"), &parsed.entry(0));
    EXPECT_TRUE(parsed.result());
}

TEST(text_parser_entries, a_name_may_have_full_stops_inside) {
    EXPECT_EQ(ParsedText("a.b.c 1 ").print(), " a.b.c 1");
}

TEST(text_parser_entries, an_array_suffix_gives_the_array_count) {
    ParsedText parsed("list[3] 1 2 3 ");
    ASSERT_EQ(parsed.count(), 1u);
    EXPECT_EQ(plain(parsed.entry(0).get_name()), "list");
    EXPECT_TRUE(parsed.entry(0).is_array());
    EXPECT_EQ(parsed.entry(0).get_array_count(), 3u);
}

TEST(text_parser_entries, empty_brackets_give_the_array_count_0) {
    ParsedText parsed("list[] 1 ");
    ASSERT_EQ(parsed.count(), 1u);
    EXPECT_TRUE(parsed.entry(0).is_array());
    EXPECT_EQ(parsed.entry(0).get_array_count(), 0u);
}

TEST(text_parser_entries, the_array_count_does_not_limit_the_values) {
    ParsedText parsed("list[1] 1 2 3 ");
    ASSERT_EQ(parsed.count(), 1u);
    EXPECT_EQ(parsed.entry(0).get_value_count(), 3u);
    EXPECT_EQ(parsed.messages(), Messages{});
}

TEST(text_parser_entries, a_template_suffix_gives_the_template) {
    ParsedText parsed("map<key> 1 ");
    ASSERT_EQ(parsed.count(), 1u);
    EXPECT_EQ(plain(parsed.entry(0).get_name()), "map");
    EXPECT_EQ(plain(parsed.entry(0).get_template()), "key");
    EXPECT_FALSE(parsed.entry(0).is_array());
}

TEST(text_parser_entries, the_array_suffix_of_a_template_word_is_taken_off_it) {
    ParsedText parsed("map<key[2]> 1 ");
    ASSERT_EQ(parsed.count(), 1u);
    EXPECT_EQ(plain(parsed.entry(0).get_template()), "key");
    EXPECT_FALSE(parsed.entry(0).is_array());
}

TEST(text_parser_entries, a_template_inside_a_template_is_a_fault_that_keeps_the_entry_before) {
    ParsedText parsed("p 0 x<y<z>> 1 ");
    EXPECT_EQ(parsed.messages(),
              (Messages{fault_at(1, 5, "Entry 'x' has template inside template declaration.")}));
    ASSERT_EQ(parsed.count(), 1u);
    EXPECT_EQ(parsed.print(), " p 0 1");
}

TEST(text_parser_entries, a_template_inside_a_template_without_an_entry_before_leaves_none) {
    ParsedText parsed("x<y<z>> 1 ");
    EXPECT_EQ(parsed.messages(),
              (Messages{fault_at(1, 1, "Entry 'x' has template inside template declaration."),
                        fault_at(1, 9, "Value without entry: 1")}));
    EXPECT_EQ(parsed.count(), 0u);
}

TEST(text_parser_entries, a_template_inside_a_template_is_found_before_a_missing_value) {
    ParsedText parsed("p x<y<z>> 1 ");
    EXPECT_EQ(parsed.messages(),
              (Messages{fault_at(1, 3, "Entry 'x' has template inside template declaration.")}));
    EXPECT_EQ(parsed.print(), " p 1");
}

TEST(text_parser_entries, a_deeper_template_is_the_same_fault) {
    EXPECT_EQ(ParsedText("p 0 x<y<z<w>>> 1 ").messages(),
              (Messages{fault_at(1, 5, "Entry 'x' has template inside template declaration.")}));
}

TEST(text_parser_entries, a_malformed_suffix_is_an_unknown_word_that_keeps_the_entry) {
    ParsedText parsed("p 0 m<> 1 l[x] 2 l[-1] 3 l[3 4 ");
    EXPECT_EQ(parsed.messages(), (Messages{fault_at(1, 5, "Unknown word type: 'm<>'"),
                                           fault_at(1, 11, "Unknown word type: 'l[x]'"),
                                           fault_at(1, 18, "Unknown word type: 'l[-1]'"),
                                           fault_at(1, 26, "Unknown word type: 'l[3'")}));
    EXPECT_EQ(parsed.print(), " p 0 1 2 3 4");
}

TEST(text_parser_entries, a_template_that_is_no_name_is_taken_off_the_unknown_word) {
    ParsedText parsed("p 0 m<1> 2 ");
    EXPECT_EQ(parsed.messages(), (Messages{fault_at(1, 5, "Unknown word type: 'm'")}));
    EXPECT_EQ(parsed.print(), " p 0 2");
}

TEST(text_parser_entries, names_may_repeat) {
    EXPECT_EQ(ParsedText("a 1 a 2 a 3 ").print(), " a 1 a 2 a 3");
}

TEST(text_parser_entries, a_name_needs_text_after_it) {
    ParsedText parsed("a");
    EXPECT_EQ(parsed.messages(), (Messages{fault_at(1, 0, "Entry 'a' has no value.")}));
    EXPECT_EQ(parsed.count(), 0u);
    EXPECT_FALSE(parsed.result());
}

TEST(text_parser_entries, the_byte_that_ends_a_name_is_no_text_after_it) {
    ParsedText parsed("a\n");
    EXPECT_EQ(parsed.messages(), (Messages{fault_at(1, 1, "Entry 'a' has no value.")}));
    EXPECT_EQ(parsed.count(), 0u);
    EXPECT_FALSE(parsed.result());
}

TEST(text_parser_entries, white_space_beyond_the_byte_that_ends_a_name_is_text_after_it) {
    ParsedText parsed("a\n\n");
    EXPECT_EQ(parsed.messages(), Messages{});
    ASSERT_EQ(parsed.count(), 1u);
    EXPECT_FALSE(parsed.entry(0).has_value());
    EXPECT_TRUE(parsed.result());
}

TEST(text_parser_entries, a_name_right_before_a_delimiter_that_ends_the_text_is_an_entry) {
    ParsedText parsed("a=");
    EXPECT_EQ(parsed.messages(), Messages{});
    ASSERT_EQ(parsed.count(), 1u);
    EXPECT_TRUE(parsed.result());
}

TEST(text_parser_entries, the_next_name_needs_a_value_taken_by_the_entry_before) {
    ParsedText parsed("a b 1 ");
    EXPECT_EQ(parsed.messages(), (Messages{fault_at(1, 3, "Entry 'b' has no value.")}));
    EXPECT_EQ(parsed.print(), " a 1");
    EXPECT_TRUE(parsed.result());
}

TEST(text_parser_entries, the_name_quoted_is_the_word_read_last) {
    EXPECT_EQ(ParsedText("first second<t> 1 ").messages(),
              (Messages{fault_at(1, 7, "Entry 'second' has no value.")}));
    EXPECT_EQ(ParsedText("first second[2] 1 ").messages(),
              (Messages{fault_at(1, 7, "Entry 'second' has no value.")}));
    EXPECT_EQ(ParsedText("first #second 1 ").messages(),
              (Messages{fault_at(1, 7, "Entry '#second' has no value.")}));
}

TEST(text_parser_entries, a_last_name_without_text_after_it_is_a_fault_that_makes_no_entry) {
    ParsedText parsed("a 1 b");
    EXPECT_EQ(parsed.messages(), (Messages{fault_at(1, 4, "Entry 'b' has no value.")}));
    EXPECT_EQ(parsed.print(), " a 1");
    EXPECT_FALSE(parsed.result());
}

TEST(text_parser_entries, the_empty_tag_makes_an_entry_without_values) {
    ParsedText parsed("a <empty> b 1 ");
    EXPECT_EQ(parsed.messages(), Messages{});
    ASSERT_EQ(parsed.count(), 2u);
    EXPECT_EQ(parsed.entry(0).get_value_count(), 0u);
    EXPECT_EQ(parsed.entry(1).get_int(0), 1);
}

TEST(text_parser_entries, the_empty_tag_among_values_stores_nothing) {
    ParsedText parsed("a 1, <empty>, 2 ");
    EXPECT_EQ(parsed.messages(), Messages{});
    EXPECT_EQ(parsed.print(), " a 1 2");
}

TEST(text_parser_entries, entries_are_appended_to_those_of_the_group) {
    ParserGroup group("g");
    group.add_entry("first", 0, 0)->add_int(1);
    EXPECT_TRUE(group.set_text("second 2 ", CoreVersion(1.2), nullptr));
    EXPECT_EQ(written(group), "g { first 1 second 2 }");
    EXPECT_TRUE(group.set_text("third 3 ", CoreVersion(1.2), nullptr));
    EXPECT_EQ(written(group), "g { first 1 second 2 third 3 }");
}

TEST(text_parser_entries, a_group_that_a_text_is_read_into_twice_holds_it_twice) {
    ParserGroup group("g");
    EXPECT_TRUE(group.set_text("a 1 ", CoreVersion(1.2), nullptr));
    EXPECT_TRUE(group.set_text("a 1 ", CoreVersion(1.2), nullptr));
    EXPECT_EQ(written(group), "g { a 1 a 1 }");
}

// The text before the suffix is a name only together with the suffix.

TEST(text_parser_entries, a_name_refused_without_its_suffix_is_logged_by_the_group) {
    ParsedText parsed("yes[2] 1 ");
    EXPECT_EQ(parsed.messages(), (Messages{"ParserGroup.add_entry: 'yes' is not a valid entry name\n",
                                           fault_at(1, 8, "Value without entry: 1")}));
    EXPECT_EQ(parsed.count(), 0u);
}

TEST(text_parser_entries, a_name_that_ends_in_a_full_stop_before_its_suffix_is_refused) {
    EXPECT_EQ(ParsedText("a.[2] <empty> ").messages().front(),
              "ParserGroup.add_entry: 'a.' is not a valid entry name\n");
    EXPECT_EQ(ParsedText("a.<t> <empty> ").messages().front(),
              "ParserGroup.add_entry: 'a.' is not a valid entry name\n");
}

TEST(text_parser_entries, after_a_refused_name_there_is_no_current_entry) {
    ParsedText parsed("a 0 no<t> 1 ");
    EXPECT_EQ(parsed.messages(), (Messages{"ParserGroup.add_entry: 'no' is not a valid entry name\n",
                                           fault_at(1, 11, "Value without entry: 1")}));
    EXPECT_EQ(parsed.print(), " a 0");
}

TEST(text_parser_entries, an_operator_may_follow_a_refused_name) {
    EXPECT_EQ(ParsedText("yes[2] = 1 ").messages(),
              (Messages{"ParserGroup.add_entry: 'yes' is not a valid entry name\n",
                        fault_at(1, 10, "Value without entry: 1")}));
}

TEST(text_parser_entries, a_name_may_follow_a_refused_name) {
    ParsedText parsed("yes[2] b 1 ");
    EXPECT_EQ(parsed.messages(), (Messages{"ParserGroup.add_entry: 'yes' is not a valid entry name\n"}));
    EXPECT_EQ(parsed.print(), " b 1");
}

TEST(text_parser_entries, a_text_that_ends_after_a_refused_name_is_true) {
    EXPECT_TRUE(ParsedText("yes[2]  ").result());
}
