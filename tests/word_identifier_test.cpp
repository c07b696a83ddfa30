#include "parser/parser_word.h"

#include "tests/support/plain_text.h"

#include <gtest/gtest.h>

#include <string>

namespace {

void expect_array(const std::string& text, const std::string& name, unsigned int count) {
    OwnedWord word(text);
    EXPECT_TRUE(word->is_identifier()) << text;
    EXPECT_EQ(word->get_type(), ParserWord::TYPE_IDENTIFIER) << text;
    EXPECT_EQ(plain(word->get_string()), name) << text;
    EXPECT_EQ(word->get_length(), name.size()) << text;
    EXPECT_TRUE(word->is_array()) << text;
    EXPECT_EQ(word->get_array_count(), count) << text;
    EXPECT_FALSE(word->has_template()) << text;
}

void expect_template(const std::string& text, const std::string& name, const std::string& of) {
    OwnedWord word(text);
    ASSERT_TRUE(word->is_identifier()) << text;
    EXPECT_EQ(word->get_type(), ParserWord::TYPE_IDENTIFIER) << text;
    EXPECT_EQ(plain(word->get_string()), name) << text;
    EXPECT_EQ(word->get_length(), name.size()) << text;
    EXPECT_FALSE(word->is_array()) << text;
    ASSERT_TRUE(word->has_template()) << text;
    EXPECT_EQ(plain(word->get_template()->get_string()), of) << text;
    EXPECT_EQ(word->get_template()->get_type(), ParserWord::TYPE_IDENTIFIER) << text;
}

void expect_invalid(const std::string& text) {
    OwnedWord word(text);
    EXPECT_FALSE(word->is_identifier()) << text;
    EXPECT_EQ(word->get_type(), ParserWord::TYPE_INVALID) << text;
    EXPECT_FALSE(word->has_template()) << text;
    EXPECT_FALSE(word->is_array()) << text;
}

void expect_unclassified(const std::string& text) {
    OwnedWord word(text);
    EXPECT_FALSE(word->is_identifier()) << text;
    EXPECT_EQ(word->get_type(), ParserWord::TYPE_UNKNOWN) << text;
    EXPECT_EQ(word->get_length(), text.size()) << text;
    EXPECT_FALSE(word->has_template()) << text;
    EXPECT_FALSE(word->is_array()) << text;
}

TEST(word_identifier, a_plain_name_has_neither_template_nor_array_count) {
    OwnedWord word("a.b_9");
    EXPECT_TRUE(word->is_identifier());
    EXPECT_EQ(plain(word->get_string()), "a.b_9");
    EXPECT_FALSE(word->has_template());
    EXPECT_FALSE(word->is_array());
    EXPECT_EQ(word->get_array_count(), 0xFFFFFFFFu);
}

TEST(word_identifier, a_name_without_brackets_leaves_the_count_of_an_earlier_one) {
    OwnedWord word("list[3]");
    ASSERT_TRUE(word->is_identifier());
    word->set_brace(false);
    EXPECT_TRUE(word->is_identifier());
    EXPECT_EQ(plain(word->get_string()), "list");
    EXPECT_EQ(word->get_array_count(), 3u);
    word->clear();
    *word += 0;
    EXPECT_TRUE(word->is_identifier());
    EXPECT_EQ(plain(word->get_string()), "l");
    EXPECT_EQ(word->get_array_count(), 3u);
}

TEST(word_identifier, a_number_in_brackets_is_the_array_count) {
    expect_array("list[3]", "list", 3);
    expect_array("list[0]", "list", 0);
    expect_array("a[12]", "a", 12);
    expect_array("a.b[2]", "a.b", 2);
    expect_array("list[2147483647]", "list", 2147483647);
}

TEST(word_identifier, empty_brackets_count_zero) {
    expect_array("list[]", "list", 0);
    expect_array("a[]", "a", 0);
}

TEST(word_identifier, the_count_is_read_like_any_int) {
    expect_array("list[+3]", "list", 3);
    expect_array("list[ 3]", "list", 3);
    expect_array("list[3x]", "list", 3);
    expect_array("list[1E2]", "list", 1);
    expect_array("list[-0]", "list", 0);
    expect_array("list[007]", "list", 7);
    expect_array("list[0x10]", "list", 0);
}

TEST(word_identifier, a_count_beyond_the_range_is_the_largest_int) {
    expect_array("list[2147483648]", "list", 2147483647);
    expect_array("list[99999999999999999999]", "list", 2147483647);
}

TEST(word_identifier, the_suffix_runs_from_the_first_bracket_to_the_last_character) {
    expect_array("a[1][2]", "a", 1);
    expect_array("a[1]x]", "a", 1);
    expect_array("a[1[]", "a", 1);
    expect_invalid("a[[1]");
    expect_invalid("a[]]");
    expect_invalid("a[x][2]");
}

TEST(word_identifier, a_negative_count_or_none_makes_the_word_invalid) {
    expect_invalid("list[-1]");
    expect_invalid("list[x]");
    expect_invalid("list[3.5]");
    expect_invalid("list[1e2]");
    expect_invalid("list[ ]");
    expect_invalid("list[-]");
    expect_invalid("list[-99999999999999]");
    expect_invalid("list[\"3\"]");
}

TEST(word_identifier, a_bracket_that_is_not_closed_at_the_end_is_a_bad_character) {
    expect_unclassified("list[3");
    expect_unclassified("list[");
    expect_unclassified("list[3]x");
    expect_unclassified("list[3] ");
    expect_unclassified("a[3]<b>");
}

TEST(word_identifier, what_stands_before_the_bracket_is_checked_as_usual) {
    expect_unclassified("a b[3]");
    expect_unclassified("9[3]x");
    expect_unclassified("[3]");
    expect_unclassified("a-[3]");
    expect_unclassified("a][3]");
}

TEST(word_identifier, a_full_stop_may_stand_before_a_suffix) {
    expect_array("a.[3]", "a.", 3);
    expect_template("a.<b>", "a.", "b");
}

TEST(word_identifier, an_identifier_in_angle_brackets_is_the_template) {
    expect_template("map<key>", "map", "key");
    expect_template("m<k>", "m", "k");
    expect_template("map<a.b>", "map", "a.b");
    expect_template("map<Yes>", "map", "Yes");
    expect_template("_<_>", "_", "_");
}

TEST(word_identifier, a_template_may_carry_a_suffix_of_its_own) {
    OwnedWord array("a<b[2]>");
    ASSERT_TRUE(array->is_identifier());
    EXPECT_FALSE(array->is_array());
    ASSERT_TRUE(array->has_template());
    EXPECT_EQ(plain(array->get_template()->get_string()), "b");
    EXPECT_EQ(array->get_template()->get_array_count(), 2u);

    OwnedWord nested("a<b<c>>");
    ASSERT_TRUE(nested->is_identifier());
    ParserWord* inner = nested->get_template();
    ASSERT_NE(inner, nullptr);
    EXPECT_EQ(plain(inner->get_string()), "b");
    ASSERT_TRUE(inner->has_template());
    EXPECT_EQ(plain(inner->get_template()->get_string()), "c");
    EXPECT_FALSE(inner->get_template()->has_template());
}

TEST(word_identifier, a_template_without_room_or_end_makes_the_word_invalid) {
    for (const char* text : {"map<>", "map<", "map<k", "map<key", "map<key>x", "map<key> ", "map<key>[3]"}) {
        expect_invalid(text);
    }
}

TEST(word_identifier, a_template_that_is_not_an_identifier_makes_the_word_invalid) {
    for (const char* text : {"map<1>", "map<yes>", "map<no>", "map<a b>", "map<b.>", "map<.b>", "map<<b>>",
                             "map<#k>", "map<>>", "map<a>>", "map<b[x]>", "map<b[-1]>", "map<b<1>>",
                             "map<b<>>", "map< >", "map<a>b>", "map<[2]>", "map<a<b>c>"}) {
        expect_invalid(text);
    }
}

TEST(word_identifier, a_word_with_a_refused_template_ends_before_it) {
    OwnedWord refused("map<1>");
    EXPECT_FALSE(refused->is_identifier());
    EXPECT_EQ(refused->get_length(), 3u);
    EXPECT_EQ(plain(refused->get_string()), "map");
    OwnedWord without_room("map<>");
    EXPECT_FALSE(without_room->is_identifier());
    EXPECT_EQ(without_room->get_length(), 5u);
    OwnedWord without_end("map<key");
    EXPECT_FALSE(without_end->is_identifier());
    EXPECT_EQ(without_end->get_length(), 7u);
}

TEST(word_identifier, a_word_with_a_refused_array_suffix_keeps_its_length) {
    OwnedWord word("list[x]");
    EXPECT_FALSE(word->is_identifier());
    EXPECT_EQ(word->get_length(), 7u);
    EXPECT_EQ(plain(word->get_string()), "list[x]");
}

TEST(word_identifier, an_invalid_word_is_nothing_for_any_classifier) {
    for (const char* text : {"list[-1]", "map<1>", "inf[x]", "nan<>"}) {
        OwnedWord word(text);
        EXPECT_FALSE(word->is_identifier());
        ParserValue::Type type = ParserValue::TYPE_GROUP;
        EXPECT_FALSE(word->is_identifier()) << text;
        EXPECT_FALSE(word->is_keyword()) << text;
        EXPECT_FALSE(word->is_bool()) << text;
        EXPECT_FALSE(word->is_int()) << text;
        EXPECT_FALSE(word->is_double()) << text;
        EXPECT_FALSE(word->is_string()) << text;
        EXPECT_FALSE(word->is_binary_data()) << text;
        EXPECT_FALSE(word->is_empty_tag()) << text;
        EXPECT_FALSE(word->is_operator()) << text;
        EXPECT_FALSE(word->is_separator()) << text;
        EXPECT_FALSE(word->is_brace()) << text;
        EXPECT_FALSE(word->is_value(type)) << text;
        EXPECT_EQ(word->get_type(), ParserWord::TYPE_INVALID) << text;
    }
}

TEST(word_identifier, a_bool_with_a_suffix_is_an_identifier) {
    expect_array("yes[2]", "yes", 2);
    expect_template("no<b>", "no", "b");
    OwnedWord word("yes[2]");
    EXPECT_TRUE(word->is_identifier());
    EXPECT_FALSE(word->is_bool());
}

TEST(word_identifier, asking_again_changes_nothing) {
    OwnedWord word("map<key>");
    EXPECT_TRUE(word->is_identifier());
    const ParserWord* first = word->get_template();
    EXPECT_TRUE(word->is_identifier());
    EXPECT_EQ(word->get_template(), first);
    EXPECT_EQ(plain(word->get_string()), "map");
}

TEST(word_identifier, the_string_read_before_the_suffix_was_taken_off_is_read_anew) {
    OwnedWord array("list[3]");
    EXPECT_EQ(plain(array->get_string()), "list[3]");
    EXPECT_TRUE(array->is_identifier());
    EXPECT_EQ(plain(array->get_string()), "list");
    OwnedWord with_template("map<key>");
    EXPECT_EQ(plain(with_template->get_string()), "map<key>");
    EXPECT_TRUE(with_template->is_identifier());
    EXPECT_EQ(plain(with_template->get_string()), "map");
}

TEST(word_identifier, other_classifiers_leave_the_suffix_on) {
    OwnedWord word("map<key>");
    EXPECT_FALSE(word->is_keyword());
    EXPECT_FALSE(word->is_int());
    EXPECT_EQ(word->get_length(), 8u);
    EXPECT_FALSE(word->has_template());
}

} // namespace
