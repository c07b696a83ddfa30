#include "parser/parser_word.h"

#include "tests/support/plain_text.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

using namespace std::literals;

namespace {

std::string decoded(const std::string& text, double version) {
    OwnedWord word(text, version);
    return plain(word->get_string());
}

TEST(word_string, under_the_older_rule_characters_stay_as_they_stand) {
    for (const std::string& text : {""s, "a"s, "\"\""s, "\"a\\nb\""s, "\"\\\""s, "\"a\0b\""s, "a\\nb"s}) {
        EXPECT_EQ(decoded(text, 1.0), text);
    }
}

TEST(word_string, the_older_rule_does_not_classify) {
    OwnedWord word("\"a\"", 1.0);
    EXPECT_EQ(plain(word->get_string()), "\"a\"");
    EXPECT_EQ(word->get_type(), ParserWord::TYPE_UNKNOWN);
}

TEST(word_string, a_word_that_turns_out_to_be_no_name_is_shown_without_its_template) {
    OwnedWord word("name<inner[x]>", 1.0);
    EXPECT_EQ(plain(word->get_string()), "name<inner[x]>");
    EXPECT_FALSE(word->is_identifier());
    EXPECT_EQ(plain(word->get_string()), "name");
}

TEST(word_string, under_the_newer_rule_a_quoted_word_is_decoded_and_keeps_its_quotes) {
    const std::pair<std::string, std::string> cases[] = {{"\"\"", "\"\""},
                                                         {"\"abc\"", "\"abc\""},
                                                         {"\"a\\nb\"", "\"a\nb\""},
                                                         {"\"a\\rb\"", "\"a\rb\""},
                                                         {"\"a\\tb\"", "\"a\tb\""},
                                                         {"\"a\\\"b\"", "\"a\"b\""},
                                                         {"\"a\\'b\"", "\"a'b\""},
                                                         {"\"a\\\\b\"", "\"a\\b\""},
                                                         {"\"a\\\\nb\"", "\"a\\nb\""},
                                                         {"\"a\\\\\\nb\"", "\"a\\\nb\""},
                                                         {"\"\\x\\0\\N\"", "\"x0N\""},
                                                         {"\"\\\"", "\"\""},
                                                         {"\"\\\\\"", "\"\\\""},
                                                         {"\"\\n\\n\"", "\"\n\n\""},
                                                         {"\"a\nb\tc\"", "\"a\nb\tc\""},
                                                         {"\"\xC3\xA9\\\xC3\xA9\"", "\"\xC3\xA9\xC3\xA9\""},
                                                         {"\"a\0b\\\0c\""s, "\"a\0b\0c\""s}};
    for (const auto& [text, expected] : cases) {
        EXPECT_EQ(decoded(text, 1.1), expected) << testing::PrintToString(text);
        EXPECT_EQ(decoded(text, 1.2), expected) << testing::PrintToString(text);
    }
}

TEST(word_string, under_the_newer_rule_only_quoted_words_are_decoded) {
    for (const char* text : {"a\\nb", "\\", "\"a\\n", "a\\n\"", "'a\\n'", "\""}) {
        EXPECT_EQ(decoded(text, 1.2), text);
    }
}

TEST(word_string, reading_a_quoted_word_classifies_it_under_the_newer_rule) {
    OwnedWord quoted("\"a\"", 1.2);
    EXPECT_EQ(plain(quoted->get_string()), "\"a\"");
    EXPECT_EQ(quoted->get_type(), ParserWord::TYPE_STRING);
    OwnedWord shortest("\"\"", 1.2);
    EXPECT_EQ(plain(shortest->get_string()), "\"\"");
    EXPECT_EQ(shortest->get_type(), ParserWord::TYPE_STRING);
    OwnedWord quote("\"", 1.2);
    EXPECT_EQ(plain(quote->get_string()), "\"");
    EXPECT_EQ(quote->get_type(), ParserWord::TYPE_UNKNOWN);
}

TEST(word_string, a_quoted_word_of_another_kind_is_not_decoded) {
    OwnedWord word("\"a\\nb\"", 1.2);
    word->set_brace(true);
    EXPECT_EQ(plain(word->get_string()), "\"a\\nb\"");
}

TEST(word_string, a_backslash_at_the_very_end_is_dropped) {
    const CoreString text("\"ab\"\\");
    ParserWord word(text, false, CoreVersion(1.2));
    for (unsigned int i = 0; i < 4; ++i) {
        word += i;
    }
    EXPECT_TRUE(word.is_string());
    word += 4u;
    EXPECT_EQ(plain(word.get_string()), "\"ab\"");
}

TEST(word_string, a_word_that_grew_is_decoded_anew) {
    const CoreString text("abc");
    ParserWord word(text, false, CoreVersion(1.2));
    word += 0u;
    EXPECT_EQ(plain(word.get_string()), "a");
    word += 1u;
    EXPECT_EQ(plain(word.get_string()), "ab");
    word.clear();
    EXPECT_EQ(plain(word.get_string()), "");
    word += 2u;
    EXPECT_EQ(plain(word.get_string()), "c");
}

TEST(word_string, the_decoded_string_is_kept_between_calls) {
    OwnedWord word("\"a\\nb\"");
    const CoreString& first = word->get_string();
    EXPECT_EQ(&word->get_string(), &first);
    EXPECT_EQ(plain(first), "\"a\nb\"");
}

TEST(word_string, the_rule_changes_at_version_1_1_with_the_tolerance_of_versions) {
    EXPECT_EQ(decoded("\"\\n\"", 0.0), "\"\\n\"");
    EXPECT_EQ(decoded("\"\\n\"", 1.0), "\"\\n\"");
    EXPECT_EQ(decoded("\"\\n\"", 1.1 - 1e-6), "\"\\n\"");
    EXPECT_EQ(decoded("\"\\n\"", 1.1 - 1e-10), "\"\n\"");
    EXPECT_EQ(decoded("\"\\n\"", 1.1), "\"\n\"");
    EXPECT_EQ(decoded("\"\\n\"", 2.0), "\"\n\"");
}

TEST(word_string, a_long_string_is_decoded_whole) {
    std::string text = "\"";
    std::string expected = "\"";
    for (int i = 0; i < 200000; ++i) {
        text += "a\\n\\\"";
        expected += "a\n\"";
    }
    EXPECT_TRUE(decoded(text + "\"", 1.2) == expected + "\"");
}

} // namespace
