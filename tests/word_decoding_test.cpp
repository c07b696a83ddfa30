#include "parser/parser_word.h"

#include "tests/support/plain_text.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using Classifier = bool (ParserWord::*)() const;

struct NamedClassifier {
    const char* name;
    Classifier classifier;
};

constexpr NamedClassifier asks_for_the_decoded_string[] = {{"is_operator", &ParserWord::is_operator},
                                                           {"is_separator", &ParserWord::is_separator},
                                                           {"is_bool", &ParserWord::is_bool},
                                                           {"is_empty_tag", &ParserWord::is_empty_tag},
                                                           {"is_double", &ParserWord::is_double},
                                                           {"is_keyword", &ParserWord::is_keyword},
                                                           {"is_identifier", &ParserWord::is_identifier}};

constexpr NamedClassifier looks_at_the_characters[] = {{"is_brace", &ParserWord::is_brace},
                                                       {"is_binary_data", &ParserWord::is_binary_data},
                                                       {"is_int", &ParserWord::is_int}};

const std::string quoted_words[] = {"\"\"",    "\"a\"",  "\"yes\"",     "\"=\"",    "\",\"",
                                    "\"1.5\"", "\"#k\"", "\"<empty>\"", "\"a\\n\"", "\"name\""};

ParserWord::Type type_after(const std::string& text, double version, Classifier classifier) {
    OwnedWord word(text, version);
    EXPECT_FALSE(((*word).*classifier)()) << text;
    return word->get_type();
}

TEST(word_decoding, a_classifier_that_decodes_a_quoted_word_leaves_it_a_string) {
    for (const NamedClassifier& asked : asks_for_the_decoded_string) {
        for (const std::string& text : quoted_words) {
            EXPECT_EQ(type_after(text, 1.1, asked.classifier), ParserWord::TYPE_STRING)
                << asked.name << " of " << text;
            EXPECT_EQ(type_after(text, 1.2, asked.classifier), ParserWord::TYPE_STRING)
                << asked.name << " of " << text;
        }
    }
}

TEST(word_decoding, under_the_older_rule_a_failed_test_leaves_a_quoted_word_unclassified) {
    for (const NamedClassifier& asked : asks_for_the_decoded_string) {
        for (const std::string& text : quoted_words) {
            EXPECT_EQ(type_after(text, 1.0, asked.classifier), ParserWord::TYPE_UNKNOWN)
                << asked.name << " of " << text;
        }
    }
}

TEST(word_decoding, a_classifier_that_looks_at_the_characters_records_nothing) {
    for (const NamedClassifier& asked : looks_at_the_characters) {
        for (const std::string& text : quoted_words) {
            EXPECT_EQ(type_after(text, 1.2, asked.classifier), ParserWord::TYPE_UNKNOWN)
                << asked.name << " of " << text;
        }
    }
}

TEST(word_decoding, a_word_that_is_not_quoted_stays_unclassified) {
    for (const NamedClassifier& asked : asks_for_the_decoded_string) {
        for (const char* text : {"\"", "\"a", "a\"", "@", ":", "'a'", "\"a\"b"}) {
            EXPECT_EQ(type_after(text, 1.2, asked.classifier), ParserWord::TYPE_UNKNOWN)
                << asked.name << " of " << text;
        }
    }
}

TEST(word_decoding, once_decoded_a_quoted_word_is_no_other_kind) {
    OwnedWord word("\"a\"");
    EXPECT_FALSE(word->is_identifier());
    EXPECT_FALSE(word->is_int());
    EXPECT_TRUE(word->is_string());
    ParserValue::Type type = ParserValue::TYPE_GROUP;
    EXPECT_TRUE(word->is_value(type));
    EXPECT_EQ(type, ParserValue::TYPE_STRING);
}

TEST(word_decoding, a_keyword_test_and_a_name_test_record_a_bool) {
    for (const double version : {1.0, 1.1, 1.2}) {
        for (const char* text : {"yes", "no"}) {
            for (const Classifier classifier : {&ParserWord::is_keyword, &ParserWord::is_identifier}) {
                EXPECT_EQ(type_after(text, version, classifier), ParserWord::TYPE_BOOL) << text;
            }
        }
    }
}

TEST(word_decoding, a_word_whose_string_is_known_is_not_decoded_again) {
    OwnedWord word("\"a\"");
    EXPECT_FALSE(word->is_operator());
    word->set_brace(false);
    EXPECT_FALSE(word->is_operator());
    EXPECT_EQ(word->get_type(), ParserWord::TYPE_UNKNOWN) << "nothing was decoded on the way";
}

TEST(word_decoding, a_word_asked_for_its_value_has_been_decoded) {
    OwnedWord word("\"a\"");
    ParserValue::Type type = ParserValue::TYPE_GROUP;
    EXPECT_TRUE(word->is_value(type));
    word->set_brace(false);
    EXPECT_FALSE(word->is_operator());
    EXPECT_EQ(word->get_type(), ParserWord::TYPE_UNKNOWN);
}

TEST(word_decoding, an_empty_word_is_left_alone) {
    for (const NamedClassifier& asked : asks_for_the_decoded_string) {
        EXPECT_EQ(type_after("", 1.2, asked.classifier), ParserWord::TYPE_UNKNOWN) << asked.name;
    }
}

} // namespace
