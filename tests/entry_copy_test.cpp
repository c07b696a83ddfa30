#include "parser/parser_entry.h"
#include "parser/parser_group.h"

#include "tests/support/counted_objects.h"
#include "tests/support/plain_text.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace {

class entry_copy : public testing::Test {
protected:
    NothingLeaks nothing_leaks;
    std::unique_ptr<ParserEntry> source = std::make_unique<ParserEntry>(
        CoreString("a name of some length"), ParserEntry::TYPE_FUNCTION_CALL, 3, 7);

    void SetUp() override {
        char bytes[] = "abc";
        OwnedWord number("1.500");
        source->set_template(CoreString("key"));
        source->set_array(true, 4);
        source->add_word(*number, ParserValue::TYPE_DOUBLE);
        source->add_string(CoreString("a text that stands in a block"));
        source->add_binary_data(bytes, 3);
        ParserGroup* group = source->add_group(nullptr);
        group->add_group(CoreString("inner"))->add_entry(CoreString("x"), 0, 0)->add_int(1);
    }

    const std::string text = "a name of some length<key>[4](1.500, \"a text that stands in a block\", "
                             "0x61626326010000, { inner { x 1 } })";

    void expect_copy(const ParserEntry& copy) const {
        EXPECT_EQ(plain(copy.get_name()), "a name of some length");
        EXPECT_EQ(copy.get_type(), ParserEntry::TYPE_FUNCTION_CALL);
        EXPECT_EQ(copy.get_line(), 3u);
        EXPECT_EQ(copy.get_column(), 7u);
        EXPECT_EQ(plain(copy.get_template()), "key");
        EXPECT_EQ(copy.get_array_count(), 4u);
        EXPECT_EQ(copy.get_value_count(), 4u);
        EXPECT_EQ(written(copy), text);
    }
};

TEST_F(entry_copy, the_source_is_written_as_expected) {
    EXPECT_EQ(written(*source), text);
}

TEST_F(entry_copy, a_copy_has_every_field_and_outlives_its_source) {
    const ParserEntry copy(*source);
    expect_copy(copy);
    source.reset();
    expect_copy(copy);
}

TEST_F(entry_copy, a_copy_has_values_of_its_own) {
    ParserEntry copy(*source);
    EXPECT_NE(&copy.get_string(1), &source->get_string(1));
    EXPECT_NE(copy.get_binary_data(2), source->get_binary_data(2));
    EXPECT_NE(copy.get_group(3), source->get_group(3));
    copy.set_int(1, 0);
    copy.get_group(3)->clear();
    copy.set_template(CoreString());
    EXPECT_EQ(written(*source), text);
}

TEST_F(entry_copy, groups_of_a_copy_have_no_source_entry_at_any_depth) {
    EXPECT_EQ(source->get_group(3)->get_source_entry(), source.get());
    EXPECT_NE(source->get_group(3)->get_entry(0u)->get_group(0)->get_source_entry(), nullptr);
    const ParserEntry copy(*source);
    EXPECT_EQ(copy.get_group(3)->get_source_entry(), nullptr);
    EXPECT_EQ(copy.get_group(3)->get_entry(0u)->get_group(0)->get_source_entry(), nullptr);
}

TEST_F(entry_copy, copy_from_replaces_everything) {
    ParserEntry target(CoreString("t"), ParserEntry::TYPE_RAW_TEXT, 1, 2);
    target.add_group(new CountedGroup);
    target.add_int(1);
    target.set_template(CoreString("another"));
    target.copy_from(*source);
    EXPECT_EQ(CountedGroup::alive, 0);
    expect_copy(target);
    EXPECT_NE(target.get_group(3), source->get_group(3));
    EXPECT_EQ(target.get_group(3)->get_source_entry(), nullptr);
    source.reset();
    expect_copy(target);
}

TEST_F(entry_copy, copy_from_takes_away_what_the_source_does_not_have) {
    const ParserEntry bare(CoreString("bare"), ParserEntry::TYPE_ENTRY, 0, 0);
    source->copy_from(bare);
    EXPECT_EQ(written(*source), "bare <empty>");
    EXPECT_FALSE(source->is_template());
    EXPECT_FALSE(source->is_array());
    EXPECT_EQ(source->get_line(), 0u);
}

TEST_F(entry_copy, an_entry_copied_from_itself_stays_as_it_was) {
    source->copy_from(*source);
    expect_copy(*source);
}

TEST_F(entry_copy, an_entry_is_copied_from_one_that_it_holds) {
    ParserEntry* inner = source->get_group(3)->get_entry(0u)->get_group(0)->get_entry(0u);
    source->copy_from(*inner);
    EXPECT_EQ(written(*source), "x 1");
}

TEST_F(entry_copy, an_entry_is_copied_from_the_one_that_holds_it) {
    ParserEntry* inner = source->get_group(3)->get_entry(0u)->get_group(0)->get_entry(0u);
    inner->copy_from(*source);
    EXPECT_EQ(plain(inner->get_name()), "a name of some length");
    ASSERT_EQ(inner->get_value_count(), 4u);
    EXPECT_EQ(inner->get_string(1), source->get_string(1));
    EXPECT_EQ(inner->get_group(3)->get_entries().get_count(), 1u);
    source.reset();
}

TEST_F(entry_copy, a_million_nested_groups_are_copied_copied_from_and_destroyed) {
    ParserGroup* group = source->get_group(3);
    for (int level = 0; level < 1000000; ++level) {
        group = group->add_group(CoreString("g"));
    }
    ParserEntry copy(*source);
    source->reset();
    ParserEntry second(CoreString("second"), ParserEntry::TYPE_ENTRY, 0, 0);
    second.copy_from(copy);
    copy.remove_value(3u);
    second.set_int(1, 3);
    EXPECT_EQ(copy.get_value_count(), 3u);
    EXPECT_EQ(second.get_int(3), 1);
}

} // namespace
