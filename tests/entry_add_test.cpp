#include "parser/parser_entry.h"
#include "parser/parser_group.h"
#include "parser/parser_word.h"

#include "tests/support/counted_objects.h"
#include "tests/support/plain_text.h"
#include "tests/support/recording_log.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

using namespace std::literals;

namespace {

class entry_add : public testing::Test {
protected:
    ParserEntry entry{CoreString("e"), ParserEntry::TYPE_ENTRY, 0, 0};
    RecordingLog log;

    void expect_last(ParserValue::Type type, const std::string& word) {
        ASSERT_TRUE(entry.has_value());
        EXPECT_EQ(entry.get_value_type(entry.get_value_count() - 1), type);
        EXPECT_EQ(plain(entry.get_word(entry.get_value_count() - 1)), word);
    }
    void TearDown() override { EXPECT_TRUE(log.is_empty()); }
};

TEST_F(entry_add, a_bool_is_stored_as_yes_or_no) {
    entry.add_bool(true);
    expect_last(ParserValue::TYPE_BOOL, "yes");
    EXPECT_TRUE(entry.get_bool(0));
    entry.add_bool(false);
    expect_last(ParserValue::TYPE_BOOL, "no");
    EXPECT_FALSE(entry.get_bool(1));
    EXPECT_EQ(entry.get_value_count(), 2u);
}

TEST_F(entry_add, a_char_is_stored_as_its_signed_code) {
    entry.add_char('A');
    expect_last(ParserValue::TYPE_CHAR, "65");
    EXPECT_EQ(entry.get_char(0), 'A');
    entry.add_char(static_cast<char>(0xE9));
    expect_last(ParserValue::TYPE_CHAR, "-23");
    EXPECT_EQ(entry.get_char(1), static_cast<char>(0xE9));
    EXPECT_EQ(entry.get_int(1), -23);
    entry.add_char('\0');
    expect_last(ParserValue::TYPE_CHAR, "0");
}

TEST_F(entry_add, an_int_is_stored_as_its_decimal_text) {
    for (const int number : {0, 7, -7, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()}) {
        entry.add_int(number);
        expect_last(ParserValue::TYPE_INT, std::to_string(number));
        EXPECT_EQ(entry.get_int(entry.get_value_count() - 1), number);
    }
}

TEST_F(entry_add, a_double_is_stored_as_its_shortest_text) {
    entry.add_double(1.5);
    expect_last(ParserValue::TYPE_DOUBLE, "1.5");
    entry.add_double(0.1 + 0.2);
    expect_last(ParserValue::TYPE_DOUBLE, "0.30000000000000004");
    EXPECT_EQ(entry.get_double(1), 0.1 + 0.2);
    entry.add_double(3.0);
    expect_last(ParserValue::TYPE_DOUBLE, "3.0");
}

TEST_F(entry_add, a_double_is_brought_to_the_finite_range) {
    entry.add_double(std::numeric_limits<double>::infinity());
    expect_last(ParserValue::TYPE_DOUBLE, "1.7976931348623157e+308");
    entry.add_double(-std::numeric_limits<double>::infinity());
    expect_last(ParserValue::TYPE_DOUBLE, "-1.7976931348623157e+308");
    entry.add_double(std::numeric_limits<double>::quiet_NaN());
    expect_last(ParserValue::TYPE_DOUBLE, "-1.7976931348623157e+308");
    EXPECT_EQ(entry.get_double(0), std::numeric_limits<double>::max());
    EXPECT_EQ(entry.get_double(2), std::numeric_limits<double>::lowest());
}

TEST_F(entry_add, a_string_is_stored_as_given) {
    for (const std::string& text : {""s, "short"s, "a text that stands in a block"s, "a\0b"s, "\"q\"\n"s}) {
        entry.add_string(CoreString(std::string_view(text)));
        expect_last(ParserValue::TYPE_STRING, text);
        EXPECT_EQ(plain(entry.get_string(entry.get_value_count() - 1)), text);
    }
}

TEST_F(entry_add, an_own_string_is_added_again) {
    entry.add_string(CoreString("a text that stands in a block"));
    for (unsigned int i = 0; i < 20; ++i) {
        entry.add_string(entry.get_string(i));
    }
    EXPECT_EQ(plain(entry.get_string(20)), "a text that stands in a block");
}

TEST_F(entry_add, bytes_are_copied) {
    char bytes[] = {1, 0, -1};
    entry.add_binary_data(bytes, 3);
    bytes[0] = 9;
    expect_last(ParserValue::TYPE_BINARY_DATA, "0x0100FF00010000");
    EXPECT_EQ(entry.get_binary_data_size(0), 3u);
    EXPECT_EQ(std::string(static_cast<char*>(entry.get_binary_data(0)), 3), "\x01\0\xFF"s);
    entry.add_binary_data(nullptr, 0);
    expect_last(ParserValue::TYPE_BINARY_DATA, "0x00000000");
    EXPECT_EQ(entry.get_binary_data_size(1), 0u);
    EXPECT_EQ(entry.get_binary_data(1), nullptr);
}

TEST_F(entry_add, a_vector_is_that_many_scalars_in_order) {
    entry.add_vec2d({1, 2.5});
    entry.add_vec2i({3, -4});
    entry.add_vec3d({5, 6, 7});
    entry.add_vec4d({8, 9, 10, 11});
    const char* words[] = {"1.0", "2.5", "3", "-4", "5.0", "6.0", "7.0", "8.0", "9.0", "10.0", "11.0"};
    ASSERT_EQ(entry.get_value_count(), 11u);
    for (unsigned int i = 0; i < 11; ++i) {
        EXPECT_EQ(plain(entry.get_word(i)), words[i]);
        EXPECT_EQ(entry.get_value_type(i),
                  i == 2 || i == 3 ? ParserValue::TYPE_INT : ParserValue::TYPE_DOUBLE);
    }
}

TEST_F(entry_add, every_component_of_a_vector_is_brought_to_the_finite_range) {
    const double infinite = std::numeric_limits<double>::infinity();
    const double none = std::numeric_limits<double>::quiet_NaN();
    entry.add_vec4d({infinite, -infinite, none, 1});
    EXPECT_EQ(entry.get_vec4d(0),
              GMathVec4<double>(std::numeric_limits<double>::max(), std::numeric_limits<double>::lowest(),
                                std::numeric_limits<double>::lowest(), 1));
}

TEST_F(entry_add, values_keep_the_order_of_adding) {
    for (int i = 0; i < 1000; ++i) {
        entry.add_int(i);
        entry.add_string(CoreString(std::to_string(i).c_str()));
    }
    ASSERT_EQ(entry.get_value_count(), 2000u);
    for (unsigned int i = 0; i < 1000; ++i) {
        ASSERT_EQ(entry.get_int(2 * i), static_cast<int>(i));
        ASSERT_EQ(plain(entry.get_string(2 * i + 1)), std::to_string(i));
    }
}

class entry_add_word : public entry_add {
protected:
    void add(const std::string& text, ParserValue::Type type, double version = 1.2) {
        OwnedWord word(text, version);
        entry.add_word(*word, type);
    }
};

TEST_F(entry_add_word, a_string_loses_its_first_and_last_character) {
    add("\"ab\"", ParserValue::TYPE_STRING);
    expect_last(ParserValue::TYPE_STRING, "ab");
    add("\"a\"", ParserValue::TYPE_STRING);
    expect_last(ParserValue::TYPE_STRING, "a");
    add("xyz", ParserValue::TYPE_STRING);
    expect_last(ParserValue::TYPE_STRING, "y");
    add("\"a text that stands in a block\"", ParserValue::TYPE_STRING);
    expect_last(ParserValue::TYPE_STRING, "a text that stands in a block");
}

TEST_F(entry_add_word, a_string_of_fewer_than_three_characters_is_empty) {
    for (const char* text : {"\"\"", "\"", "", "ab", "a"}) {
        add(text, ParserValue::TYPE_STRING);
        expect_last(ParserValue::TYPE_STRING, "");
    }
}

TEST_F(entry_add_word, a_string_is_decoded_by_the_rule_of_its_word) {
    add("\"a\\n\\\"b\\\"\"", ParserValue::TYPE_STRING, 1.2);
    expect_last(ParserValue::TYPE_STRING, "a\n\"b\"");
    add("\"a\\n\\\"b\\\"\"", ParserValue::TYPE_STRING, 1.0);
    expect_last(ParserValue::TYPE_STRING, "a\\n\\\"b\\\"");
    add("\"\\\"", ParserValue::TYPE_STRING, 1.2);
    expect_last(ParserValue::TYPE_STRING, "");
    add("\"\\\"", ParserValue::TYPE_STRING, 1.0);
    expect_last(ParserValue::TYPE_STRING, "\\");
}

TEST_F(entry_add_word, binary_data_is_decoded) {
    add("0x4142000000FF", ParserValue::TYPE_BINARY_DATA);
    expect_last(ParserValue::TYPE_BINARY_DATA, "0x414283000000");
    EXPECT_EQ(std::string(static_cast<char*>(entry.get_binary_data(0)), 2), "AB");
    add("0x0", ParserValue::TYPE_BINARY_DATA);
    EXPECT_EQ(entry.get_binary_data_size(1), 0u);
}

TEST_F(entry_add_word, binary_data_is_decoded_from_the_word_as_it_stands) {
    // If the escapes were resolved first, the word would be too short for two bytes.
    add("\"\\41420000000\"", ParserValue::TYPE_BINARY_DATA);
    EXPECT_EQ(entry.get_binary_data_size(0), 2u);
}

TEST_F(entry_add_word, any_other_type_keeps_the_text_unchanged) {
    for (const ParserValue::Type type :
         {ParserValue::TYPE_BOOL, ParserValue::TYPE_CHAR, ParserValue::TYPE_INT, ParserValue::TYPE_DOUBLE,
          ParserValue::TYPE_WORD}) {
        for (const char* text : {"yes", "065", "1.50", "12ab", "", "\"q\"", "a text of more than eleven"}) {
            add(text, type);
            expect_last(type, text);
        }
    }
    add("065", ParserValue::TYPE_CHAR);
    EXPECT_EQ(entry.get_char(entry.get_value_count() - 1), 'A');
    expect_last(ParserValue::TYPE_CHAR, "065");
    add("1.50", ParserValue::TYPE_DOUBLE);
    EXPECT_EQ(entry.get_double(entry.get_value_count() - 1), 1.5);
    expect_last(ParserValue::TYPE_DOUBLE, "1.50");
}

TEST_F(entry_add_word, a_group_is_named_by_the_text) {
    add("box", ParserValue::TYPE_GROUP);
    ASSERT_TRUE(entry.is_group());
    EXPECT_EQ(plain(entry.get_group(0)->get_name()), "box");
    EXPECT_EQ(entry.get_group(0)->get_source_entry(), nullptr);
}

TEST_F(entry_add_word, a_word_without_its_suffix_is_what_is_added) {
    OwnedWord word("list[3]");
    EXPECT_TRUE(word->is_identifier());
    entry.add_word(*word, ParserValue::TYPE_WORD);
    expect_last(ParserValue::TYPE_WORD, "list");
}

class entry_add_group : public entry_add {
protected:
    NothingLeaks nothing_leaks;
};

TEST_F(entry_add_group, null_makes_a_new_group_whose_source_is_the_entry) {
    ParserGroup* group = entry.add_group(nullptr);
    ASSERT_NE(group, nullptr);
    EXPECT_TRUE(group->get_name().is_empty());
    EXPECT_EQ(group->get_source_entry(), &entry);
    EXPECT_EQ(entry.get_group(0), group);
    EXPECT_EQ(entry.get_value_count(), 1u);
}

TEST_F(entry_add_group, a_group_is_adopted_and_its_source_is_left_as_it_is) {
    ParserEntry other(CoreString("other"), ParserEntry::TYPE_ENTRY, 0, 0);
    auto* first = new CountedGroup("first");
    auto* second = new CountedGroup("second");
    second->set_source_entry(&other);
    EXPECT_EQ(entry.add_group(first), first);
    EXPECT_EQ(entry.add_group(second), second);
    EXPECT_EQ(entry.get_group(0), first);
    EXPECT_EQ(entry.get_group(1), second);
    EXPECT_EQ(first->get_source_entry(), nullptr);
    EXPECT_EQ(second->get_source_entry(), &other);
    EXPECT_EQ(plain(first->get_name()), "first");
    EXPECT_EQ(CountedGroup::alive, 2);
    entry.reset();
    EXPECT_EQ(CountedGroup::alive, 0);
}

TEST_F(entry_add_group, groups_stay_where_they_are_while_values_are_added) {
    ParserGroup* group = entry.add_group(nullptr);
    for (int i = 0; i < 1000; ++i) {
        entry.add_int(i);
    }
    EXPECT_EQ(entry.get_group(0), group);
    EXPECT_EQ(group->get_source_entry(), &entry);
}

} // namespace
