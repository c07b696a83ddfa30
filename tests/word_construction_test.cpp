#include "parser/parser_file.h"
#include "parser/parser_word.h"

#include "tests/support/plain_text.h"

#include <gtest/gtest.h>

#include <string>
#include <type_traits>

namespace {

void expect_bare(const ParserWord& word) {
    EXPECT_EQ(word.get_line(), 0u);
    EXPECT_EQ(word.get_column(), 0u);
    EXPECT_EQ(word.get_array_count(), 0xFFFFFFFFu);
    EXPECT_FALSE(word.is_array());
    EXPECT_FALSE(word.has_template());
    EXPECT_EQ(word.get_template(), nullptr);
    EXPECT_EQ(word.get_type(), ParserWord::TYPE_UNKNOWN);
}

/// A word for some characters of a text.
ParserWord word_at(const CoreString& text, unsigned int start, unsigned int length) {
    ParserWord word(text, false, default_parser_serial_version);
    for (unsigned int i = 0; i < length; ++i) {
        word += start + i;
    }
    return word;
}

TEST(word, the_kinds_have_their_numbers) {
    EXPECT_EQ(ParserWord::TYPE_IDENTIFIER, 0u);
    EXPECT_EQ(ParserWord::TYPE_OPERATOR, 1u);
    EXPECT_EQ(ParserWord::TYPE_SEPARATOR, 2u);
    EXPECT_EQ(ParserWord::TYPE_KEYWORD, 3u);
    EXPECT_EQ(ParserWord::TYPE_BOOL, 4u);
    EXPECT_EQ(ParserWord::TYPE_BINARY_DATA, 5u);
    EXPECT_EQ(ParserWord::TYPE_BRACE, 6u);
    EXPECT_EQ(ParserWord::TYPE_INT, 7u);
    EXPECT_EQ(ParserWord::TYPE_DOUBLE, 8u);
    EXPECT_EQ(ParserWord::TYPE_STRING, 9u);
    EXPECT_EQ(ParserWord::TYPE_EMPTY_TAG, 10u);
    EXPECT_EQ(ParserWord::TYPE_INVALID, 11u);
    EXPECT_EQ(ParserWord::TYPE_UNKNOWN, 12u);
}

TEST(word, its_destructor_is_virtual) {
    EXPECT_TRUE(std::has_virtual_destructor_v<ParserWord>);
}

TEST(word, a_word_over_the_whole_text_has_its_length) {
    const CoreString text("some text");
    const ParserWord word(text, true, CoreVersion(1.2));
    expect_bare(word);
    EXPECT_EQ(word.get_length(), 9u);
    EXPECT_FALSE(word.is_empty());
    EXPECT_EQ(plain(word.get_string()), "some text");
}

TEST(word, a_word_over_none_of_the_text_is_empty) {
    const CoreString text("some text");
    const ParserWord word(text, false, CoreVersion(1.2));
    expect_bare(word);
    EXPECT_TRUE(word.is_empty());
    EXPECT_EQ(word.get_length(), 0u);
    EXPECT_TRUE(word.get_string().is_empty());
}

TEST(word, a_word_without_a_text_is_empty) {
    for (const ParserWord& word : {ParserWord(), ParserWord(CoreVersion(1.0))}) {
        expect_bare(word);
        EXPECT_TRUE(word.is_empty());
        EXPECT_TRUE(word.get_string().is_empty());
        EXPECT_TRUE(word == "");
        EXPECT_FALSE(word == "a");
    }
}

TEST(word, an_empty_word_is_nothing_for_any_classifier) {
    const CoreString text("=");
    for (ParserWord word : {ParserWord(), ParserWord(text, false, CoreVersion(1.2))}) {
        ParserValue::Type type = ParserValue::TYPE_GROUP;
        EXPECT_FALSE(word.is_operator());
        EXPECT_FALSE(word.is_separator());
        EXPECT_FALSE(word.is_brace());
        EXPECT_FALSE(word.is_bool());
        EXPECT_FALSE(word.is_empty_tag());
        EXPECT_FALSE(word.is_binary_data());
        EXPECT_FALSE(word.is_string());
        EXPECT_FALSE(word.is_int());
        EXPECT_FALSE(word.is_double());
        EXPECT_FALSE(word.is_keyword());
        EXPECT_FALSE(word.is_identifier());
        EXPECT_FALSE(word.is_value(type));
        EXPECT_EQ(type, ParserValue::TYPE_GROUP);
        EXPECT_EQ(word.get_type(), ParserWord::TYPE_UNKNOWN);
    }
}

TEST(word, the_first_character_gives_the_start_and_each_adds_one_to_the_length) {
    const CoreString text("key value");
    ParserWord word(text, false, CoreVersion(1.2));
    word += 4u;
    EXPECT_EQ(word.get_length(), 1u);
    EXPECT_EQ(plain(word.get_string()), "v");
    word += 5u;
    word += 6u;
    EXPECT_EQ(word.get_length(), 3u);
    EXPECT_EQ(plain(word.get_string()), "val");
    EXPECT_EQ(word[0], 'v');
    EXPECT_EQ(word[2], 'l');
}

TEST(word, growing_gives_back_the_word_itself) {
    const CoreString text("abc");
    ParserWord word(text, false, CoreVersion(1.2));
    EXPECT_EQ(&(word += 0u), &word);
}

TEST(word, growing_a_classified_word_keeps_its_kind) {
    const CoreString text("12ab");
    ParserWord word = word_at(text, 0, 2);
    EXPECT_TRUE(word.is_int());
    word += 2u;
    EXPECT_EQ(word.get_type(), ParserWord::TYPE_INT);
    EXPECT_EQ(plain(word.get_string()), "12a");
}

TEST(word, clear_makes_it_empty_and_unclassified) {
    OwnedWord word("12");
    EXPECT_TRUE(word->is_int());
    EXPECT_EQ(plain(word->get_string()), "12");
    word->clear();
    EXPECT_TRUE(word->is_empty());
    EXPECT_EQ(word->get_type(), ParserWord::TYPE_UNKNOWN);
    EXPECT_TRUE(word->get_string().is_empty());
}

TEST(word, a_cleared_word_starts_anew_at_the_next_character) {
    const CoreString text("12 abc");
    ParserWord word = word_at(text, 0, 2);
    EXPECT_TRUE(word.is_int());
    word.clear();
    word += 3u;
    word += 4u;
    EXPECT_EQ(plain(word.get_string()), "ab");
    EXPECT_TRUE(word.is_identifier());
}

TEST(word, its_place_is_what_was_set) {
    ParserWord word;
    word.set_line(0xFFFFFFFFu);
    word.set_column(17);
    EXPECT_EQ(word.get_line(), 0xFFFFFFFFu);
    EXPECT_EQ(word.get_column(), 17u);
}

TEST(word, a_word_in_the_middle_of_a_text_sees_nothing_around_it) {
    const CoreString text("x12.5yes=,\"s\"");
    EXPECT_TRUE(word_at(text, 1, 2).is_int());
    EXPECT_TRUE(word_at(text, 1, 4).is_double());
    EXPECT_TRUE(word_at(text, 5, 3).is_bool());
    EXPECT_TRUE(word_at(text, 8, 1).is_operator());
    EXPECT_TRUE(word_at(text, 9, 1).is_separator());
    EXPECT_TRUE(word_at(text, 10, 3).is_string());
    EXPECT_TRUE(word_at(text, 5, 2).is_identifier());
    const CoreString number("1.5");
    EXPECT_TRUE(word_at(number, 0, 1).is_int());
    const CoreString hexadecimal("0x12");
    EXPECT_FALSE(word_at(hexadecimal, 0, 2).is_binary_data());
    EXPECT_TRUE(word_at(hexadecimal, 0, 3).is_binary_data());
    EXPECT_FALSE(word_at(hexadecimal, 1, 3).is_int());
}

TEST(word, a_word_equals_every_beginning_of_what_stands_in_the_text_from_its_start) {
    const CoreString text("abc def");
    const ParserWord whole = word_at(text, 0, 3);
    EXPECT_TRUE(whole == "abc");
    EXPECT_TRUE(whole == "ab");
    EXPECT_TRUE(whole == "");
    EXPECT_FALSE(whole == "abd");
    EXPECT_FALSE(whole == "b");
    EXPECT_FALSE(whole == "ABC");
}

TEST(word, the_comparison_goes_on_in_the_text_behind_the_word) {
    const CoreString text("abc def");
    const ParserWord part = word_at(text, 0, 2);
    EXPECT_TRUE(part == "abc");
    EXPECT_TRUE(part == "abc def");
    EXPECT_FALSE(part == "abd");
    const ParserWord later = word_at(text, 4, 1);
    EXPECT_TRUE(later == "def");
    EXPECT_FALSE(later == "abc");
}

TEST(word, the_comparison_ends_with_the_text) {
    const CoreString text("abc");
    const ParserWord word = word_at(text, 1, 2);
    EXPECT_TRUE(word == "bc");
    EXPECT_FALSE(word == "bcd");
}

TEST(word, an_empty_word_equals_only_the_empty_text) {
    const CoreString text("abc");
    const ParserWord word(text, false, CoreVersion(1.2));
    EXPECT_TRUE(word == "");
    EXPECT_FALSE(word == "a");
}

TEST(word, a_brace_is_only_what_was_set_as_one) {
    OwnedWord word("{");
    EXPECT_FALSE(word->is_brace());
    EXPECT_EQ(word->get_type(), ParserWord::TYPE_UNKNOWN);
    word->set_brace(true);
    EXPECT_TRUE(word->is_brace());
    EXPECT_EQ(word->get_type(), ParserWord::TYPE_BRACE);
    word->set_brace(false);
    EXPECT_FALSE(word->is_brace());
    EXPECT_EQ(word->get_type(), ParserWord::TYPE_UNKNOWN);
}

TEST(word, taking_the_brace_away_leaves_any_word_unclassified) {
    OwnedWord word("12");
    EXPECT_TRUE(word->is_int());
    word->set_brace(false);
    EXPECT_EQ(word->get_type(), ParserWord::TYPE_UNKNOWN);
    EXPECT_TRUE(word->is_double());
}

} // namespace
