#include "parser/parser_word.h"

#include "tests/support/plain_text.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>

using namespace std::literals;

namespace {

using Classifier = bool (ParserWord::*)() const;

struct Kind {
    char letter;
    Classifier classifier;
    ParserWord::Type type;
};

const Kind kinds[] = {{'o', &ParserWord::is_operator, ParserWord::TYPE_OPERATOR},
                      {'s', &ParserWord::is_separator, ParserWord::TYPE_SEPARATOR},
                      {'{', &ParserWord::is_brace, ParserWord::TYPE_BRACE},
                      {'b', &ParserWord::is_bool, ParserWord::TYPE_BOOL},
                      {'e', &ParserWord::is_empty_tag, ParserWord::TYPE_EMPTY_TAG},
                      {'x', &ParserWord::is_binary_data, ParserWord::TYPE_BINARY_DATA},
                      {'"', &ParserWord::is_string, ParserWord::TYPE_STRING},
                      {'i', &ParserWord::is_int, ParserWord::TYPE_INT},
                      {'d', &ParserWord::is_double, ParserWord::TYPE_DOUBLE},
                      {'k', &ParserWord::is_keyword, ParserWord::TYPE_KEYWORD},
                      {'n', &ParserWord::is_identifier, ParserWord::TYPE_IDENTIFIER}};

/// A text, and the letters of the classifiers that accept it if no other was called before.
struct Text {
    std::string text;
    std::string letters;
};

void PrintTo(const Text& text, std::ostream* out) {
    *out << testing::PrintToString(text.text);
}

const std::string nul(1, '\0');

class word_classifier : public testing::TestWithParam<Text> {};

TEST_P(word_classifier, a_fresh_word_is_taken_by_just_these_kinds) {
    for (const Kind& kind : kinds) {
        OwnedWord word(GetParam().text);
        const bool expected = GetParam().letters.find(kind.letter) != std::string::npos;
        EXPECT_EQ(((*word).*kind.classifier)(), expected) << "kind " << kind.letter;
        if (expected) {
            EXPECT_EQ(word->get_type(), kind.type) << "kind " << kind.letter;
        }
    }
}

TEST_P(word_classifier, the_kind_that_took_a_word_settles_what_every_other_answers) {
    for (const Kind& first : kinds) {
        OwnedWord word(GetParam().text);
        if (!((*word).*first.classifier)()) {
            continue;
        }
        for (const Kind& later : kinds) {
            EXPECT_EQ(((*word).*later.classifier)(), later.letter == first.letter)
                << first.letter << " then " << later.letter;
            EXPECT_EQ(word->get_type(), first.type);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(signs, word_classifier,
                         testing::Values(Text{"=", "o"}, Text{",", "s"}, Text{"==", ""}, Text{"= ", ""},
                                         Text{",,", ""}, Text{"<", ""}, Text{"{", ""}, Text{"}", ""},
                                         Text{"(", ""}, Text{"yes", "b"}, Text{"no", "b"}, Text{"Yes", "n"},
                                         Text{"YES", "n"}, Text{"yes1", "n"}, Text{"ye", "n"},
                                         Text{"not", "n"}, Text{"true", "n"}, Text{"yes ", ""},
                                         Text{" no", ""}, Text{"<empty>", "e"}, Text{"<Empty>", ""},
                                         Text{"<empty> ", ""}, Text{"empty", "n"}, Text{"<empt>", ""},
                                         Text{"\0"s, ""}, Text{"=\0"s, ""}, Text{"yes\0"s, ""}));

INSTANTIATE_TEST_SUITE_P(keywords, word_classifier,
                         testing::Values(Text{"#a1_", "k"}, Text{"#_", "k"}, Text{"#A", "k"},
                                         Text{"#z9", "k"}, Text{"#version", "k"}, Text{"#yes", "k"},
                                         Text{"#", ""}, Text{"#1a", ""}, Text{"##", ""}, Text{"##a", ""},
                                         Text{"#a-", ""}, Text{"#a.b", ""}, Text{"#a#", ""},
                                         Text{"#a<b>", ""}, Text{"#a[1]", ""}, Text{"# a", ""},
                                         Text{"a#", ""}, Text{"#\xE9", ""}, Text{"#a\xE9", ""},
                                         Text{"#a\0"s, ""}));

INSTANTIATE_TEST_SUITE_P(literals, word_classifier,
                         testing::Values(Text{"\"\"", "\""}, Text{"\"a\"", "\""}, Text{"\"a", ""},
                                         Text{"a\"", ""}, Text{"\"", ""}, Text{"\"a\"b\"", "\""},
                                         Text{"\"a\"b", ""}, Text{"'a'", ""}, Text{"\"=\"", "\""},
                                         Text{"\"yes\"", "\""}, Text{"\"12\"", "\""}, Text{"\"\\\"", "\""},
                                         Text{"0x1", "xid"}, Text{"0x", "i"}, Text{"0x00000000", "xid"},
                                         Text{"0xg", "xi"}, Text{"0X1", "id"}, Text{"0x.", "xd"},
                                         Text{"0x ", "xi"}, Text{"-0x1", "id"}, Text{" 0x1", "id"},
                                         Text{"00x1", "id"}, Text{"1x1", "id"}, Text{"x1", "n"}));

INSTANTIATE_TEST_SUITE_P(
    numbers, word_classifier,
    testing::Values(Text{"0", "id"}, Text{"12", "id"}, Text{"-12", "id"}, Text{"+12", "id"},
                    Text{"12ab", "id"}, Text{"1E5", "id"}, Text{"1e5", "d"}, Text{"12e", "d"},
                    Text{"1E5e", "d"}, Text{"12e+", "d"}, Text{"1.5", "d"}, Text{"1.", "d"}, Text{".5", "d"},
                    Text{"-.5", "d"}, Text{"1.2.3", "d"}, Text{"12.ab", "d"}, Text{"12ab.", "d"},
                    Text{"12ae", "d"}, Text{"12abE", "id"}, Text{"e5", "n"}, Text{"E5", "n"}, Text{"-", ""},
                    Text{"+", ""}, Text{".", ""}, Text{"-.", ""}, Text{"+-5", ""}, Text{"--5", ""},
                    Text{"- 5", ""}, Text{" 5", "id"}, Text{"\t5", "id"}, Text{"\v\f\r\n5", "id"},
                    Text{"5 ", "id"}, Text{" ", ""}, Text{"5,6", "id"}, Text{"99999999999999999999", "id"},
                    Text{"1e999", "d"}, Text{"5\0"s, "id"}, Text{"5\0e"s, "d"}, Text{"5\0."s, "d"},
                    Text{nul + "5", ""}));

INSTANTIATE_TEST_SUITE_P(numbers_in_letters, word_classifier,
                         testing::Values(Text{"infi", "n"}, Text{"-infi", ""}, Text{"inf", "dn"},
                                         Text{"INF", "dn"}, Text{"-inf", "d"}, Text{"infinity", "dn"},
                                         Text{"information", "dn"}, Text{"in", "n"}, Text{"nan", "dn"},
                                         Text{"NaN", "dn"}, Text{"-nan", "d"}, Text{"nan(12)", "d"},
                                         Text{"nan[2]", "dn"}, Text{"name", "n"}, Text{"nanometre", "dn"},
                                         Text{"na", "n"}));

INSTANTIATE_TEST_SUITE_P(identifiers, word_classifier,
                         testing::Values(Text{"a", "n"}, Text{"_", "n"}, Text{"Z", "n"}, Text{"a9", "n"},
                                         Text{"_9", "n"}, Text{"a_b", "n"}, Text{"a.b", "n"},
                                         Text{"a..b", "n"}, Text{"a.9", "n"}, Text{"a.b.c", "n"},
                                         Text{"a.", ""}, Text{"a.b.", ""}, Text{".a", ""}, Text{"9a", "id"},
                                         Text{"a-b", ""}, Text{"a b", ""}, Text{"a=", ""}, Text{"a,", ""},
                                         Text{"a#", ""}, Text{"a>", ""}, Text{"a]", ""}, Text{"a{", ""},
                                         Text{"a@", ""}, Text{"@", ""}, Text{"`", ""}, Text{"a`", ""},
                                         Text{"[", ""}, Text{"a/", ""}, Text{"a:", ""}, Text{"\xE9", ""},
                                         Text{"a\xE9", ""}, Text{"a\0"s, ""}, Text{"a\0b"s, ""},
                                         Text{"a\x7F", ""}));

TEST(word_kind, a_failed_test_leaves_the_word_open_for_the_next) {
    OwnedWord word("12");
    EXPECT_FALSE(word->is_operator());
    EXPECT_FALSE(word->is_bool());
    EXPECT_FALSE(word->is_string());
    EXPECT_FALSE(word->is_keyword());
    EXPECT_FALSE(word->is_identifier());
    EXPECT_EQ(word->get_type(), ParserWord::TYPE_UNKNOWN);
    EXPECT_TRUE(word->is_double());
    EXPECT_FALSE(word->is_int());
}

TEST(word_kind, clearing_is_a_way_back_to_unclassified) {
    const CoreString text("12");
    ParserWord word(text, true, CoreVersion(1.2));
    EXPECT_TRUE(word.is_int());
    EXPECT_FALSE(word.is_double());
    word.clear();
    word += 0u;
    EXPECT_TRUE(word.is_double());
    EXPECT_FALSE(word.is_int());
}

TEST(word_kind, a_brace_is_nothing_else) {
    OwnedWord word("12");
    word->set_brace(true);
    for (const Kind& kind : kinds) {
        EXPECT_EQ(((*word).*kind.classifier)(), kind.letter == '{') << kind.letter;
    }
    ParserValue::Type type = ParserValue::TYPE_GROUP;
    EXPECT_FALSE(word->is_value(type));
}

TEST(word_kind, under_the_older_string_rule_the_kinds_are_the_same) {
    for (const Text& text : {Text{"\"a\\\"b\"", "\""}, Text{"=", "o"}, Text{"yes", "b"}, Text{"<empty>", "e"},
                             Text{"1.5", "d"}, Text{"a<b>", "n"}, Text{"#k", "k"}, Text{"0x12", "xid"}}) {
        for (const Kind& kind : kinds) {
            OwnedWord word(text.text, 1.0);
            EXPECT_EQ(((*word).*kind.classifier)(), text.letters.find(kind.letter) != std::string::npos)
                << text.text << " " << kind.letter;
        }
    }
}

} // namespace
