#include "tests/support/parsed_text.h"
#include "tests/support/plain_text.h"

#include <gtest/gtest.h>

namespace {

/// The type of the value that a ParserWord makes of the text; "none" if it is not a value.
std::string type_of_word(const std::string& text) {
    OwnedWord word(text);
    ParserValue::Type type{};
    return word->is_value(type) ? plain(ParserValue::get_type_name(type)) : "none";
}

/// The type of the value that the parser makes of the text.
std::string type_of_parsed(const std::string& text) {
    ParsedText parsed("a 0 " + text + " ");
    const bool is_taken = parsed.count() == 1 && parsed.entry(0).get_value_count() == 2;
    return is_taken ? plain(ParserValue::get_type_name(parsed.entry(0).get_value_type(1))) : "none";
}

} // namespace

TEST(text_parser_numbers, short_words_are_what_they_are_to_a_word) {
    static constexpr std::string_view alphabet = "0x1-+.eEA<";
    std::vector<std::string> words = {""};
    for (std::size_t i = 0; i < words.size(); ++i) {
        if (!words[i].empty()) {
            EXPECT_EQ(type_of_parsed(words[i]), type_of_word(words[i])) << words[i];
        }
        for (const char character : words[i].size() < 4 ? alphabet : std::string_view()) {
            const std::string longer = words[i] + character;
            if (longer[0] != 'x' && longer[0] != 'e' && longer[0] != 'E' && longer[0] != 'A') { // names
                words.push_back(longer);
            }
        }
    }
    EXPECT_GT(words.size(), 5000u);
}

TEST(text_parser_numbers, one_character_behind_0x_makes_binary_data) {
    EXPECT_EQ(type_of_parsed("0x"), "TYPE_INT");
    EXPECT_EQ(type_of_parsed("0x1"), "TYPE_BINARY_DATA");
    EXPECT_EQ(type_of_parsed("-0x1"), "TYPE_INT");
}

TEST(text_parser_numbers, what_scanf_gives_up_half_way_is_no_value_in_a_row_of_numbers) {
    for (const char* text : {"-0xg.", "-0xg.e", "0Xg.", "0X.e", "-0x.", "-0xe", "-0x", "0Xg", "1x.", "-1Xe",
                             "-infi", "+0x.", "+0xg.", "-infinity", "-infix"}) {
        EXPECT_EQ(type_of_parsed(text), type_of_word(text)) << text;
    }
    EXPECT_EQ(type_of_parsed("-0xg."), "none");
    EXPECT_EQ(type_of_parsed("-infi"), "none");
}

TEST(text_parser_numbers, a_word_that_is_no_number_ends_a_row_with_a_message) {
    ParsedText parsed("a 1 2 -0xg.5 3 4\n");
    EXPECT_EQ(parsed.messages(), std::vector<std::string>{fault_at(1, 7, "Unknown word type: '-0xg.5'")});
}
