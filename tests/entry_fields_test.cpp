#include "parser/parser_entry.h"
#include "parser/parser_group.h"

#include "tests/support/plain_text.h"

#include <gtest/gtest.h>

#include <string>
#include <type_traits>

namespace {

TEST(entry, the_kinds_have_their_numbers) {
    EXPECT_EQ(ParserEntry::TYPE_ENTRY, 0u);
    EXPECT_EQ(ParserEntry::TYPE_KEYWORD, 1u);
    EXPECT_EQ(ParserEntry::TYPE_FUNCTION_CALL, 2u);
    EXPECT_EQ(ParserEntry::TYPE_RAW_TEXT, 3u);
}

TEST(entry, its_destructor_is_virtual_and_it_takes_sixty_four_bytes) {
    EXPECT_TRUE(std::has_virtual_destructor_v<ParserEntry>);
    EXPECT_EQ(sizeof(ParserEntry), 64u);
}

TEST(entry, a_new_entry_has_what_it_was_made_of_and_nothing_else) {
    const ParserEntry entry(CoreString("a name of some length"), ParserEntry::TYPE_FUNCTION_CALL, 3,
                            0xFFFFFFFFu);
    EXPECT_EQ(plain(entry.get_name()), "a name of some length");
    EXPECT_EQ(entry.get_type(), ParserEntry::TYPE_FUNCTION_CALL);
    EXPECT_EQ(entry.get_line(), 3u);
    EXPECT_EQ(entry.get_column(), 0xFFFFFFFFu);
    EXPECT_EQ(entry.get_value_count(), 0u);
    EXPECT_FALSE(entry.has_value());
    EXPECT_EQ(entry.get_array_count(), 0xFFFFFFFFu);
    EXPECT_FALSE(entry.is_array());
    EXPECT_TRUE(entry.get_template().is_empty());
    EXPECT_FALSE(entry.is_template());
    EXPECT_FALSE(entry.is_group());
}

TEST(entry, a_name_is_stored_exactly_as_given) {
    for (const char* name : {"list[3]", "map<key>", "#key", "", "not a name at all", "a.b"}) {
        const ParserEntry entry(CoreString(name), ParserEntry::TYPE_ENTRY, 0, 0);
        EXPECT_EQ(plain(entry.get_name()), name);
        EXPECT_FALSE(entry.is_array());
        EXPECT_FALSE(entry.is_template());
    }
}

class entry_fields : public testing::Test {
protected:
    ParserEntry entry{CoreString("name"), ParserEntry::TYPE_KEYWORD, 3, 7};
};

TEST_F(entry_fields, renaming_takes_any_text_and_leaves_the_rest) {
    entry.add_int(1);
    entry.rename(CoreString("9 is no identifier"));
    EXPECT_EQ(plain(entry.get_name()), "9 is no identifier");
    EXPECT_EQ(entry.get_type(), ParserEntry::TYPE_KEYWORD);
    EXPECT_EQ(entry.get_line(), 3u);
    EXPECT_EQ(entry.get_value_count(), 1u);
    entry.rename(CoreString());
    EXPECT_TRUE(entry.get_name().is_empty());
}

TEST_F(entry_fields, an_entry_is_renamed_to_its_own_name_and_a_part_of_it) {
    entry.rename(CoreString("a name of some length"));
    entry.rename(entry.get_name());
    EXPECT_EQ(plain(entry.get_name()), "a name of some length");
    entry.rename(entry.get_name().sub_string(2, 4));
    EXPECT_EQ(plain(entry.get_name()), "name");
}

TEST_F(entry_fields, a_template_is_set_replaced_and_removed) {
    entry.set_template(CoreString("key"));
    EXPECT_TRUE(entry.is_template());
    EXPECT_EQ(plain(entry.get_template()), "key");
    entry.set_template(CoreString("another template with a long name"));
    EXPECT_EQ(plain(entry.get_template()), "another template with a long name");
    entry.set_template(CoreString());
    EXPECT_FALSE(entry.is_template());
    EXPECT_TRUE(entry.get_template().is_empty());
    entry.set_template(CoreString());
    EXPECT_FALSE(entry.is_template());
}

TEST_F(entry_fields, a_template_is_set_to_itself) {
    entry.set_template(CoreString("another template with a long name"));
    entry.set_template(entry.get_template());
    EXPECT_EQ(plain(entry.get_template()), "another template with a long name");
}

TEST_F(entry_fields, an_array_has_the_declared_count) {
    entry.set_array(true, 5);
    EXPECT_TRUE(entry.is_array());
    EXPECT_EQ(entry.get_array_count(), 5u);
}

TEST_F(entry_fields, an_array_of_unstated_size_counts_zero) {
    entry.set_array(true, 0);
    EXPECT_TRUE(entry.is_array());
    EXPECT_EQ(entry.get_array_count(), 0u);
}

TEST_F(entry_fields, an_entry_that_is_no_array_ignores_the_count) {
    entry.set_array(true, 5);
    entry.set_array(false, 5);
    EXPECT_FALSE(entry.is_array());
    EXPECT_EQ(entry.get_array_count(), 0xFFFFFFFFu);
}

TEST_F(entry_fields, the_largest_count_means_no_array) {
    entry.set_array(true, 0xFFFFFFFFu);
    EXPECT_FALSE(entry.is_array());
    EXPECT_EQ(entry.get_array_count(), 0xFFFFFFFFu);
}

TEST_F(entry_fields, raw_text_is_switched_on_and_off) {
    entry.set_as_raw_text(true);
    EXPECT_EQ(entry.get_type(), ParserEntry::TYPE_RAW_TEXT);
    entry.set_as_raw_text(false);
    EXPECT_EQ(entry.get_type(), ParserEntry::TYPE_ENTRY);
}

TEST_F(entry_fields, switching_raw_text_off_makes_an_ordinary_entry_of_any_kind) {
    for (const ParserEntry::Type type : {ParserEntry::TYPE_ENTRY, ParserEntry::TYPE_KEYWORD,
                                         ParserEntry::TYPE_FUNCTION_CALL, ParserEntry::TYPE_RAW_TEXT}) {
        ParserEntry each(CoreString("#key"), type, 0, 0);
        each.set_as_raw_text(false);
        EXPECT_EQ(each.get_type(), ParserEntry::TYPE_ENTRY);
        EXPECT_EQ(plain(each.get_name()), "#key");
    }
}

TEST_F(entry_fields, references_to_fields_follow_later_changes) {
    const CoreString& name = entry.get_name();
    const ParserEntry::Type& type = entry.get_type();
    const unsigned int& array_count = entry.get_array_count();
    entry.rename(CoreString("renamed"));
    entry.set_as_raw_text(true);
    entry.set_array(true, 4);
    EXPECT_EQ(plain(name), "renamed");
    EXPECT_EQ(type, ParserEntry::TYPE_RAW_TEXT);
    EXPECT_EQ(array_count, 4u);
}

TEST_F(entry_fields, reset_deletes_the_values_and_leaves_everything_else) {
    entry.set_template(CoreString("key"));
    entry.set_array(true, 2);
    for (int i = 0; i < 10; ++i) {
        entry.add_int(i);
    }
    entry.reset();
    EXPECT_EQ(entry.get_value_count(), 0u);
    EXPECT_FALSE(entry.has_value());
    EXPECT_EQ(plain(entry.get_name()), "name");
    EXPECT_EQ(entry.get_type(), ParserEntry::TYPE_KEYWORD);
    EXPECT_EQ(plain(entry.get_template()), "key");
    EXPECT_EQ(entry.get_array_count(), 2u);
    EXPECT_EQ(entry.get_line(), 3u);
    EXPECT_EQ(entry.get_column(), 7u);
    entry.reset();
    entry.add_int(1);
    EXPECT_EQ(entry.get_value_count(), 1u);
}

TEST_F(entry_fields, an_entry_is_a_group_with_exactly_one_value_that_is_one) {
    EXPECT_FALSE(entry.is_group());
    entry.add_group(nullptr);
    EXPECT_TRUE(entry.is_group());
    entry.add_group(nullptr);
    EXPECT_FALSE(entry.is_group());
    entry.reset();
    entry.add_int(1);
    EXPECT_FALSE(entry.is_group());
}

} // namespace
