#include "parser/parser_entry.h"
#include "parser/parser_group.h"

#include "tests/support/counted_objects.h"
#include "tests/support/plain_text.h"
#include "tests/support/tree_equal.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace {

class group_copy : public testing::Test {
protected:
    NothingLeaks nothing_leaks;
    ParserEntry holder{CoreString("holder"), ParserEntry::TYPE_ENTRY, 0, 0};
    std::unique_ptr<ParserGroup> source = std::make_unique<ParserGroup>(CoreString("source"));

    void SetUp() override {
        source->set_source_entry(&holder);
        source->add_entry(CoreString("a"), 3, 4)->add_int(1);
        source->add_entry(CoreString("#k"), 5, 6)->add_string(CoreString("text"));
        ParserGroup* inner = source->add_group(CoreString("inner"));
        inner->add_group(CoreString("deep"))->add_entry(CoreString("x"), 0, 0)->add_double(0.5);
    }

    const std::string text = "source { a 1 #k \"text\" inner { deep { x 0.5 } } }";
};

TEST_F(group_copy, a_copy_is_deep_and_outlives_its_source) {
    ASSERT_EQ(written(*source), text);
    const ParserGroup copy(*source);
    EXPECT_EQ(tree_difference(copy, *source), "");
    EXPECT_NE(copy.get_entry(0u), source->get_entry(0u));
    EXPECT_NE(copy.get_entry(1u)->get_group(0), source->get_entry(1u)->get_group(0));
    EXPECT_EQ(copy.get_entry(0u)->get_line(), 3u);
    EXPECT_EQ(copy.get_entry(0u)->get_column(), 4u);
    source->get_entry(0u)->set_int(2, 0);
    source.reset();
    EXPECT_EQ(written(copy), text);
}

TEST_F(group_copy, a_copy_has_both_indexes) {
    const ParserGroup copy(*source);
    EXPECT_EQ(copy.get_entry_count(), 2u);
    EXPECT_EQ(plain(copy.get_entry(1u)->get_name()), "inner");
    EXPECT_EQ(copy.get_keyword(CoreString("#k")), copy.get_entries()[1]);
}

TEST_F(group_copy, a_copy_is_indexed_by_the_types_as_they_are) {
    source->get_entry(0u)->set_as_raw_text(true);
    EXPECT_EQ(source->get_entry_count(), 2u);
    const ParserGroup copy(*source);
    EXPECT_EQ(copy.get_entry_count(), 1u);
    EXPECT_EQ(copy.get_keyword(CoreString("a")), copy.get_entries()[0]);
    EXPECT_EQ(source->get_entry_count(), 2u);
}

TEST_F(group_copy, a_copy_and_the_groups_in_it_have_no_source_entry) {
    EXPECT_NE(source->get_entry(1u)->get_group(0)->get_source_entry(), nullptr);
    const ParserGroup copy(*source);
    EXPECT_EQ(copy.get_source_entry(), nullptr);
    const ParserGroup* inner = copy.get_entry(1u)->get_group(0);
    EXPECT_EQ(inner->get_source_entry(), nullptr);
    EXPECT_EQ(inner->get_entry(0u)->get_group(0)->get_source_entry(), nullptr);
    EXPECT_EQ(source->get_source_entry(), &holder);
}

TEST_F(group_copy, set_replaces_name_and_entries_and_keeps_the_source_entry) {
    ParserEntry other(CoreString("other"), ParserEntry::TYPE_ENTRY, 0, 0);
    ParserGroup target(CoreString("target"));
    target.set_source_entry(&other);
    target.add_entry(*new CountedEntry("old"));
    target.set(*source);
    EXPECT_EQ(CountedEntry::alive, 0);
    EXPECT_EQ(written(target), text);
    EXPECT_EQ(target.get_source_entry(), &other);
    EXPECT_EQ(target.get_entry(1u)->get_group(0)->get_source_entry(), nullptr);
    EXPECT_EQ(target.get_entry_count(), 2u);
    EXPECT_NE(target.get_entry(0u), source->get_entry(0u));
    source.reset();
    EXPECT_EQ(written(target), text);
}

TEST_F(group_copy, set_to_an_empty_group_empties) {
    source->set(ParserGroup(CoreString("empty")));
    EXPECT_EQ(written(*source), "empty { }");
    EXPECT_EQ(source->get_entry_count(), 0u);
    EXPECT_EQ(source->get_source_entry(), &holder);
}

TEST_F(group_copy, a_group_set_to_itself_stays_as_it_was) {
    const ParserEntry* first = source->get_entry(0u);
    source->set(*source);
    EXPECT_EQ(written(*source), text);
    EXPECT_EQ(source->get_entry(0u), first);
}

TEST_F(group_copy, a_group_is_set_to_one_that_it_holds) {
    source->set(*source->get_entry(1u)->get_group(0)->get_entry(0u)->get_group(0));
    EXPECT_EQ(written(*source), "{ x 0.5 }");
}

TEST_F(group_copy, a_group_is_set_to_the_one_that_holds_it) {
    ParserGroup* inner = source->get_entry(1u)->get_group(0);
    inner->set(*source);
    EXPECT_EQ(plain(inner->get_name()), "source");
    EXPECT_EQ(inner->get_entries().get_count(), 3u);
    EXPECT_EQ(inner->get_entry(0u)->get_int(0), 1);
}

TEST_F(group_copy, entries_of_a_hosts_own_class_are_copied_as_entries) {
    auto* counted = new CountedEntry("e");
    counted->add_int(1);
    source->add_entry(*counted);
    const ParserGroup copy(*source);
    EXPECT_EQ(CountedEntry::alive, 1);
    EXPECT_EQ(copy.get_entry(CoreString("e"))->get_int(0), 1);
    source->clear();
}

TEST_F(group_copy, a_copy_of_a_copy_is_the_same) {
    const ParserGroup first(*source);
    const ParserGroup second(first);
    EXPECT_EQ(tree_difference(second, *source), "");
}

} // namespace
