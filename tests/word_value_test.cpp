#include "parser/parser_word.h"

#include "tests/support/plain_text.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace {

struct ValueText {
    const char* text;
    ParserValue::Type value;
    ParserWord::Type kind;
};

TEST(word_value, each_text_is_the_first_kind_of_value_that_takes_it) {
    const ValueText cases[] = {{"<empty>", ParserValue::TYPE_WORD, ParserWord::TYPE_EMPTY_TAG},
                               {"0x1", ParserValue::TYPE_BINARY_DATA, ParserWord::TYPE_BINARY_DATA},
                               {"0x00000000", ParserValue::TYPE_BINARY_DATA, ParserWord::TYPE_BINARY_DATA},
                               {"0xyes", ParserValue::TYPE_BINARY_DATA, ParserWord::TYPE_BINARY_DATA},
                               {"0x", ParserValue::TYPE_INT, ParserWord::TYPE_INT},
                               {"0X1", ParserValue::TYPE_INT, ParserWord::TYPE_INT},
                               {"yes", ParserValue::TYPE_BOOL, ParserWord::TYPE_BOOL},
                               {"no", ParserValue::TYPE_BOOL, ParserWord::TYPE_BOOL},
                               {"12", ParserValue::TYPE_INT, ParserWord::TYPE_INT},
                               {"12ab", ParserValue::TYPE_INT, ParserWord::TYPE_INT},
                               {"-7", ParserValue::TYPE_INT, ParserWord::TYPE_INT},
                               {"1E5", ParserValue::TYPE_INT, ParserWord::TYPE_INT},
                               {"1e5", ParserValue::TYPE_DOUBLE, ParserWord::TYPE_DOUBLE},
                               {"1e", ParserValue::TYPE_DOUBLE, ParserWord::TYPE_DOUBLE},
                               {"1.5", ParserValue::TYPE_DOUBLE, ParserWord::TYPE_DOUBLE},
                               {".5", ParserValue::TYPE_DOUBLE, ParserWord::TYPE_DOUBLE},
                               {"inf", ParserValue::TYPE_DOUBLE, ParserWord::TYPE_DOUBLE},
                               {"nan", ParserValue::TYPE_DOUBLE, ParserWord::TYPE_DOUBLE},
                               {"-infinity", ParserValue::TYPE_DOUBLE, ParserWord::TYPE_DOUBLE},
                               {"\"\"", ParserValue::TYPE_STRING, ParserWord::TYPE_STRING},
                               {"\"12\"", ParserValue::TYPE_STRING, ParserWord::TYPE_STRING},
                               {"\"yes\"", ParserValue::TYPE_STRING, ParserWord::TYPE_STRING},
                               {"\"<empty>\"", ParserValue::TYPE_STRING, ParserWord::TYPE_STRING}};
    for (const ValueText& each : cases) {
        for (const double version : {1.0, 1.2}) {
            OwnedWord word(each.text, version);
            ParserValue::Type type = ParserValue::TYPE_GROUP;
            EXPECT_TRUE(word->is_value(type)) << each.text;
            EXPECT_EQ(type, each.value) << each.text;
            EXPECT_EQ(word->get_type(), each.kind) << each.text;
        }
    }
}

TEST(word_value, what_is_no_value_leaves_the_type_untouched) {
    for (const char* text :
         {"", "abc", "#key", "=", ",", "{", "\"", "\"open", "-", ".", "Yes", "true", "a<b>"}) {
        OwnedWord word(text);
        ParserValue::Type type = ParserValue::TYPE_CHAR;
        EXPECT_FALSE(word->is_value(type)) << text;
        EXPECT_EQ(type, ParserValue::TYPE_CHAR) << text;
    }
}

TEST(word_value, a_classified_word_is_the_value_of_its_kind) {
    ParserValue::Type type = ParserValue::TYPE_GROUP;
    OwnedWord number("0x12");
    EXPECT_TRUE(number->is_double());
    EXPECT_TRUE(number->is_value(type));
    EXPECT_EQ(type, ParserValue::TYPE_DOUBLE);
    OwnedWord integer("0x12");
    EXPECT_TRUE(integer->is_int());
    EXPECT_TRUE(integer->is_value(type));
    EXPECT_EQ(type, ParserValue::TYPE_INT);
    OwnedWord data("0x12");
    EXPECT_TRUE(data->is_binary_data());
    EXPECT_TRUE(data->is_value(type));
    EXPECT_EQ(type, ParserValue::TYPE_BINARY_DATA);
    OwnedWord name("inf");
    EXPECT_TRUE(name->is_identifier());
    type = ParserValue::TYPE_GROUP;
    EXPECT_FALSE(name->is_value(type));
    EXPECT_EQ(type, ParserValue::TYPE_GROUP);
}

TEST(word_value, just_these_kinds_are_kinds_of_values) {
    const std::set<unsigned int> values = {4, 5, 7, 8, 9, 10};
    for (unsigned int kind = 0; kind < 40; ++kind) {
        EXPECT_EQ(ParserWord::is_value_type(static_cast<ParserWord::Type>(kind)), values.count(kind) == 1)
            << kind;
    }
    EXPECT_FALSE(ParserWord::is_value_type(static_cast<ParserWord::Type>(0xFFFFFFFFu)));
    EXPECT_FALSE(ParserWord::is_value_type(ParserWord::TYPE_BRACE));
}

} // namespace
