#include "parser/words/parser_characters_impl.h"

#include <gtest/gtest.h>

#include <string_view>

namespace {

bool is_in(std::string_view characters, char character) {
    return characters.find(character) != std::string_view::npos;
}

bool is_letter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool is_digit(char c) {
    return c >= '0' && c <= '9';
}

/// Compares the class of every byte with a rule.
template <class Rule>
void expect_class(unsigned int character_class, Rule rule) {
    for (int code = 0; code < 256; ++code) {
        const char byte = static_cast<char>(static_cast<unsigned char>(code));
        EXPECT_EQ(bk::is_char(byte, character_class), rule(byte)) << "byte " << code;
    }
}

} // namespace

TEST(characters, four_bytes_are_white_space_and_two_of_them_break_lines) {
    expect_class(bk::CHAR_BLANK, [](char c) { return is_in(" \t\n\r", c); });
    expect_class(bk::CHAR_LINE_BREAK, [](char c) { return is_in("\n\r", c); });
}

TEST(characters, seven_bytes_are_words_of_their_own) {
    expect_class(bk::CHAR_DELIMITER, [](char c) { return is_in("{}(),:=", c); });
}

TEST(characters, every_letter_of_ascii_and_the_underscore_begin_a_name) {
    expect_class(bk::CHAR_NAME_START, [](char c) { return is_letter(c) || c == '_'; });
}

TEST(characters, names_go_on_with_digits_as_well) {
    expect_class(bk::CHAR_NAME, [](char c) { return is_letter(c) || is_digit(c) || c == '_'; });
    expect_class(bk::CHAR_NOT_IN_NAME, [](char c) { return !is_letter(c) && !is_digit(c) && c != '_'; });
}

TEST(characters, digits_are_ten_and_hexadecimal_ones_are_of_either_case) {
    expect_class(bk::CHAR_DIGIT, is_digit);
    expect_class(bk::CHAR_HEX_DIGIT, [](char c) { return is_digit(c) || is_in("abcdefABCDEF", c); });
}

TEST(characters, a_full_stop_and_a_small_e_mark_a_double) {
    expect_class(bk::CHAR_DOUBLE_MARK, [](char c) { return c == '.' || c == 'e'; });
}

TEST(characters, the_other_classes_have_the_bytes_that_they_name) {
    expect_class(bk::CHAR_QUOTE, [](char c) { return c == '"'; });
    expect_class(bk::CHAR_DIRECTIVE, [](char c) { return is_in("#\"/0", c); });
    expect_class(bk::CHAR_TERMINATOR, [](char c) { return c == '\0'; });
    expect_class(bk::CHAR_ESCAPED, [](char c) { return is_in("\t\n\r\"'\\", c); });
}

TEST(characters, a_run_of_a_word_ends_at_white_space_delimiters_quotes_and_the_end) {
    expect_class(bk::CHAR_ENDS_RUN, [](char c) { return is_in(" \t\n\r{}(),:=\"", c) || c == '\0'; });
}
