#include "parser/parser_entry.h"
#include "parser/parser_group.h"
#include "parser/parser_word.h"

#include "tests/support/plain_text.h"
#include "tests/support/recording_log.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

/// The positions of the values of `entry`, which has one of each type.
enum Position : unsigned int { GROUP, BOOL, CHAR, INT, DOUBLE, STRING, BINARY_DATA, WORD, POSITIONS };

class entry_read : public testing::Test {
protected:
    ParserEntry entry{CoreString("e"), ParserEntry::TYPE_ENTRY, 0, 0};
    RecordingLog log;

    void SetUp() override {
        char bytes[] = "abc";
        OwnedWord word("<empty>");
        entry.add_group(nullptr);
        entry.add_bool(true);
        entry.add_char('A');
        entry.add_int(300);
        entry.add_double(-2.9);
        entry.add_string(CoreString("text"));
        entry.add_binary_data(bytes, 3);
        entry.add_word(*word, ParserValue::TYPE_WORD);
        ASSERT_EQ(entry.get_value_count(), POSITIONS);
    }

    std::vector<LoggedMessage> mismatch(const char* read, const char* type) {
        return one_warning(std::string("ParserValue.") + read + ": type mismatch, value type is '" + type +
                           "' \n");
    }
};

TEST_F(entry_read, scalars_are_read_as_each_other) {
    EXPECT_TRUE(entry.get_bool(BOOL));
    EXPECT_TRUE(entry.get_bool(INT));
    EXPECT_EQ(entry.get_char(CHAR), 'A');
    EXPECT_EQ(entry.get_char(INT), 44);
    EXPECT_EQ(entry.get_int(BOOL), 1);
    EXPECT_EQ(entry.get_int(DOUBLE), -2);
    EXPECT_EQ(entry.get_double(DOUBLE), -2.9);
    EXPECT_EQ(entry.get_double(CHAR), 65.0);
    EXPECT_EQ(plain(entry.get_string(STRING)), "text");
    EXPECT_EQ(entry.get_binary_data_size(BINARY_DATA), 3u);
    EXPECT_EQ(std::string(static_cast<char*>(entry.get_binary_data(BINARY_DATA)), 3), "abc");
    EXPECT_TRUE(log.is_empty());
}

TEST_F(entry_read, a_mismatch_is_told_by_the_value_alone) {
    EXPECT_FALSE(entry.get_bool(STRING));
    EXPECT_EQ(log.take(), mismatch("get_as_bool", "TYPE_STRING"));
    EXPECT_EQ(entry.get_char(WORD), 0);
    EXPECT_EQ(log.take(), mismatch("get_as_char", "TYPE_WORD"));
    EXPECT_EQ(entry.get_int(GROUP), 0);
    EXPECT_EQ(log.take(), mismatch("get_as_int", "TYPE_GROUP"));
    EXPECT_EQ(entry.get_double(BINARY_DATA), 0.0);
    EXPECT_EQ(log.take(), mismatch("get_as_double", "TYPE_BINARY_DATA"));
    EXPECT_TRUE(entry.get_string(INT).is_empty());
    EXPECT_EQ(log.take(), mismatch("get_as_string", "TYPE_INT"));
    EXPECT_EQ(entry.get_binary_data(STRING), nullptr);
    EXPECT_EQ(log.take(), mismatch("get_as_binary_data", "TYPE_STRING"));
    EXPECT_EQ(entry.get_binary_data_size(BOOL), 0u);
    EXPECT_EQ(log.take(), mismatch("get_as_binary_data", "TYPE_BOOL"));
}

TEST_F(entry_read, the_word_of_a_value_is_its_text_and_a_group_has_none) {
    const char* words[] = {"", "yes", "65", "300", "-2.9", "text", "0x61626326010000", "<empty>"};
    for (unsigned int i = 0; i < POSITIONS; ++i) {
        EXPECT_EQ(plain(entry.get_word(i)), words[i]) << i;
    }
    EXPECT_TRUE(log.is_empty());
}

TEST_F(entry_read, the_word_of_an_unknown_type_is_empty) {
    OwnedWord word("some text");
    entry.add_word(*word, static_cast<ParserValue::Type>(99));
    EXPECT_EQ(plain(entry.get_word(POSITIONS)), "");
    EXPECT_TRUE(log.is_empty());
    EXPECT_EQ(entry.get_value_type(POSITIONS), 99u);
}

TEST_F(entry_read, the_word_is_a_copy) {
    CoreString word = entry.get_word(STRING);
    word += " changed";
    EXPECT_EQ(plain(entry.get_string(STRING)), "text");
}

TEST_F(entry_read, each_test_of_a_type_takes_just_its_types) {
    for (unsigned int i = 0; i < POSITIONS; ++i) {
        EXPECT_EQ(entry.is_value_group(i), i == GROUP) << i;
        EXPECT_EQ(entry.is_value_bool(i), i == BOOL) << i;
        EXPECT_EQ(entry.is_value_char(i), i == CHAR) << i;
        EXPECT_EQ(entry.is_value_int(i), i == INT) << i;
        EXPECT_EQ(entry.is_value_double(i), i == INT || i == DOUBLE) << i;
        EXPECT_EQ(entry.is_value_string(i), i == STRING) << i;
        EXPECT_EQ(entry.get_value_type(i), i) << i;
    }
}

TEST_F(entry_read, a_string_is_given_by_reference) {
    EXPECT_EQ(&entry.get_string(STRING), &entry.get_string(STRING));
    EXPECT_EQ(&entry.get_string(INT), &CoreString::get_null_string());
}

TEST_F(entry_read, the_type_of_any_value_of_an_empty_entry_is_all_bits_set) {
    const ParserEntry empty(CoreString("e"), ParserEntry::TYPE_ENTRY, 0, 0);
    for (const unsigned int i : {0u, 7u, 0xFFFFFFFFu}) {
        EXPECT_EQ(empty.get_value_type(i), 0xFFFFFFFFu);
    }
}

TEST_F(entry_read, the_group_of_another_value_is_null_and_nothing_is_said) {
    EXPECT_NE(entry.get_group(GROUP), nullptr);
    for (unsigned int i = BOOL; i < POSITIONS; ++i) {
        EXPECT_EQ(entry.get_group(i), nullptr) << i;
    }
    EXPECT_EQ(entry.get_value_count(), POSITIONS);
    EXPECT_TRUE(log.is_empty());
}

TEST_F(entry_read, reading_the_group_of_an_empty_entry_makes_it) {
    for (const unsigned int i : {0u, 7u}) {
        const ParserEntry empty(CoreString("e"), ParserEntry::TYPE_ENTRY, 0, 0);
        ParserGroup* group = empty.get_group(i);
        ASSERT_NE(group, nullptr);
        EXPECT_EQ(group->get_source_entry(), &empty);
        EXPECT_TRUE(group->get_name().is_empty());
        EXPECT_EQ(empty.get_value_count(), 1u);
        EXPECT_TRUE(empty.is_group());
        EXPECT_EQ(empty.get_group(0), group);
        EXPECT_EQ(empty.get_value_count(), 1u);
    }
}

TEST_F(entry_read, setters_give_a_value_new_content_and_type) {
    char bytes[] = "xy";
    for (unsigned int i = 0; i < POSITIONS; ++i) {
        entry.set_bool(true, i);
        EXPECT_TRUE(entry.is_value_bool(i));
        EXPECT_EQ(plain(entry.get_word(i)), "yes");
        entry.set_int(-5, i);
        EXPECT_TRUE(entry.is_value_int(i));
        EXPECT_EQ(plain(entry.get_word(i)), "-5");
        entry.set_double(0.5, i);
        EXPECT_EQ(entry.get_value_type(i), ParserValue::TYPE_DOUBLE);
        EXPECT_EQ(plain(entry.get_word(i)), "0.5");
        entry.set_string(CoreString("new"), i);
        EXPECT_TRUE(entry.is_value_string(i));
        EXPECT_EQ(plain(entry.get_string(i)), "new");
        entry.set_binary_data(bytes, 2, i);
        EXPECT_EQ(entry.get_value_type(i), ParserValue::TYPE_BINARY_DATA);
        EXPECT_EQ(plain(entry.get_word(i)), "0x7879F1000000");
    }
    EXPECT_EQ(entry.get_value_count(), POSITIONS);
    EXPECT_TRUE(log.is_empty());
}

TEST_F(entry_read, a_spelling_goes_with_the_value_that_had_it) {
    OwnedWord word("1.500");
    entry.add_word(*word, ParserValue::TYPE_DOUBLE);
    entry.add_word(*word, ParserValue::TYPE_DOUBLE);
    entry.set_double(1.5, POSITIONS);
    EXPECT_EQ(plain(entry.get_word(POSITIONS)), "1.5");
    EXPECT_EQ(plain(entry.get_word(POSITIONS + 1)), "1.500");
}

TEST_F(entry_read, a_value_is_set_to_what_another_one_holds) {
    entry.add_string(CoreString("a text that stands in a block"));
    entry.set_string(entry.get_string(POSITIONS), INT);
    EXPECT_EQ(plain(entry.get_string(INT)), "a text that stands in a block");
    entry.set_string(entry.get_string(INT), INT);
    EXPECT_EQ(plain(entry.get_string(INT)), "a text that stands in a block");
}

class entry_vector : public testing::Test {
protected:
    ParserEntry entry{CoreString("e"), ParserEntry::TYPE_ENTRY, 0, 0};
    RecordingLog log;
};

TEST_F(entry_vector, components_are_read_from_the_given_value_on) {
    entry.add_vec4d({1, 2, 3, 4});
    entry.add_int(5);
    EXPECT_EQ(entry.get_vec2d(0), GMathVec2<double>(1, 2));
    EXPECT_EQ(entry.get_vec2i(1), GMathVec2<int>(2, 3));
    EXPECT_EQ(entry.get_vec3d(2), GMathVec3<double>(3, 4, 5));
    EXPECT_EQ(entry.get_vec4d(1), GMathVec4<double>(2, 3, 4, 5));
}

TEST_F(entry_vector, components_without_a_value_are_zero_and_nothing_is_said) {
    entry.add_vec3d({1, 2, 3});
    ASSERT_EQ(entry.get_value_count(), 3u);
    EXPECT_EQ(entry.get_vec4d(0), GMathVec4<double>(1, 2, 3, 0));
    EXPECT_EQ(entry.get_vec2d(2), GMathVec2<double>(3, 0));
    EXPECT_EQ(entry.get_vec2i(2), GMathVec2<int>(3, 0));
    EXPECT_EQ(entry.get_vec3d(1), GMathVec3<double>(2, 3, 0));
    for (const unsigned int start : {3u, 5u, 0x80000000u, 0xFFFFFFFEu, 0xFFFFFFFFu}) {
        EXPECT_EQ(entry.get_vec2d(start), GMathVec2<double>(0, 0)) << start;
        EXPECT_EQ(entry.get_vec2i(start), GMathVec2<int>(0, 0)) << start;
        EXPECT_EQ(entry.get_vec3d(start), GMathVec3<double>(0, 0, 0)) << start;
        EXPECT_EQ(entry.get_vec4d(start), GMathVec4<double>(0, 0, 0, 0)) << start;
    }
    EXPECT_TRUE(log.is_empty());
}

TEST_F(entry_vector, an_empty_entry_gives_zeros_and_stays_empty) {
    EXPECT_EQ(entry.get_vec4d(0), GMathVec4<double>(0, 0, 0, 0));
    EXPECT_EQ(entry.get_value_count(), 0u);
}

TEST_F(entry_vector, doubles_are_truncated_in_a_vector_of_ints) {
    entry.add_vec2d({2.9, -2.9});
    EXPECT_EQ(entry.get_vec2i(0), GMathVec2<int>(2, -2));
}

TEST_F(entry_vector, scalars_of_every_type_are_components) {
    entry.add_bool(true);
    entry.add_char('A');
    entry.add_int(7);
    entry.add_double(0.5);
    EXPECT_EQ(entry.get_vec4d(0), GMathVec4<double>(1, 65, 7, 0.5));
}

TEST_F(entry_vector, a_component_of_another_type_is_zero_and_told_by_its_value) {
    entry.add_string(CoreString("x"));
    entry.add_int(7);
    entry.add_group(nullptr);
    EXPECT_EQ(entry.get_vec3d(0), GMathVec3<double>(0, 7, 0));
    EXPECT_EQ(log.take(),
              (std::vector<LoggedMessage>{
                  {2, "ParserValue.get_as_double: type mismatch, value type is 'TYPE_STRING' \n"},
                  {2, "ParserValue.get_as_double: type mismatch, value type is 'TYPE_GROUP' \n"}}));
    EXPECT_EQ(entry.get_vec2i(0), GMathVec2<int>(0, 7));
    EXPECT_EQ(log.take(),
              one_warning("ParserValue.get_as_int: type mismatch, value type is 'TYPE_STRING' \n"));
}

} // namespace
