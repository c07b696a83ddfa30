#include "parser/parser_entry.h"
#include "parser/parser_group.h"

#include "tests/support/counted_objects.h"
#include "tests/support/plain_text.h"
#include "tests/support/recording_log.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace {

const std::string one_refused = "ParserGroup.move_entry: an entry cannot move into itself\n";
const std::string all_refused = "ParserGroup.move_entries: an entry cannot move into itself\n";

/// root { a { inner { deep } #k } b { } c }
class group_move_inside : public testing::Test {
protected:
    NothingLeaks nothing_leaks;
    RecordingLog log;
    ParserGroup root{CoreString("root")};
    ParserGroup* a = root.add_group(CoreString("a"));
    ParserGroup* b = root.add_group(CoreString("b"));
    ParserGroup* inner = a->add_group(CoreString("inner"));
    ParserGroup* deep = inner->add_group(CoreString("deep"));

    void SetUp() override {
        a->add_entry(*new CountedEntry("#k", ParserEntry::TYPE_KEYWORD));
        root.add_entry(CoreString("c"), 0, 0)->add_int(1);
    }

    void expect_refused(const std::string& message, const std::string& before) {
        EXPECT_EQ(log.take(), one_warning(message));
        EXPECT_EQ(written(root), before);
    }
};

TEST_F(group_move_inside, an_entry_is_not_moved_into_its_own_group) {
    const std::string before = written(root);
    root.move_entry(0, *a);
    expect_refused(one_refused, before);
}

TEST_F(group_move_inside, an_entry_is_not_moved_into_a_group_below_it) {
    const std::string before = written(root);
    root.move_entry(0, *inner);
    expect_refused(one_refused, before);
    root.move_entry(0, *deep);
    expect_refused(one_refused, before);
    EXPECT_EQ(root.get_entry_count(), 3u);
    EXPECT_EQ(root.get_entry(0u)->get_group(0), a);
}

TEST_F(group_move_inside, a_group_without_a_source_entry_is_found_as_well) {
    auto* const adopted = deep->add_group(new CountedGroup("adopted"));
    auto* const below = new ParserGroup(CoreString("below"));
    adopted->add_group(below);
    const std::string before = written(root);
    root.move_entry(0, *adopted);
    expect_refused(one_refused, before);
    root.move_entry(0, *below);
    expect_refused(one_refused, before);
}

TEST_F(group_move_inside, a_source_entry_that_a_host_has_set_misleads_nobody) {
    const std::string before = written(root);
    deep->set_source_entry(root.get_entry(1u));
    root.move_entry(0, *deep);
    expect_refused(one_refused, before);
    {
        ParserEntry gone(CoreString("gone"), ParserEntry::TYPE_ENTRY, 0, 0);
        deep->set_source_entry(&gone);
    }
    root.move_entry(0, *deep);
    expect_refused(one_refused, before);
}

TEST_F(group_move_inside, a_group_in_a_value_that_several_entries_list_is_found_through_each) {
    ParserEntry* const second = a->add_entry(CoreString("second"), 0, 0);
    *second = *root.get_entry(1u); // b is then inside a and beside it
    const std::string before = written(root);
    root.move_entry(0, *b);
    expect_refused(one_refused, before);
    root.move_entry(1, *b);
    expect_refused(one_refused, before);
    root.move_entry(2, *b);
    EXPECT_TRUE(log.is_empty());
    EXPECT_EQ(b->get_entry_count(), 1u);
}

TEST_F(group_move_inside, an_entry_that_several_groups_list_is_searched_too) {
    *b = *inner; // both groups list the entry that holds deep
    const std::string before = written(root);
    b->move_entry(0, *deep);
    expect_refused(one_refused, before);
    root.move_entry(1, *deep);
    expect_refused(one_refused, before);
}

TEST_F(group_move_inside, entries_that_share_all_below_them_are_searched_in_no_time) {
    ParserGroup* at = deep;
    for (int level = 0; level < 200; ++level) { // gives 2^200 ways to the bottom
        ParserGroup* const next = at->add_group(CoreString("x"));
        *at->add_entry(CoreString("y"), 0, 0) = *at->get_entry(0u);
        at = next;
    }
    root.move_entry(0, *b);
    EXPECT_TRUE(log.is_empty());
    EXPECT_EQ(b->get_entry(0u)->get_group(0), a);
    root.move_entry(0, *at);
    EXPECT_EQ(log.take(), one_warning(one_refused));
}

TEST_F(group_move_inside, ordinary_entries_move_all_or_none) {
    const std::string before = written(root);
    root.move_entries(*deep);
    expect_refused(all_refused, before);
    root.move_entries(*a);
    expect_refused(all_refused, before);
    EXPECT_EQ(a->get_entries().get_count(), 2u);
}

TEST_F(group_move_inside, entries_of_every_kind_move_all_or_none) {
    const std::string before = written(root);
    root.move_entries(*deep, 0);
    expect_refused(all_refused, before);
    root.move_entries(*b, 0);
    expect_refused(all_refused, before);
    EXPECT_EQ(b->get_entries().get_count(), 0u);
}

TEST_F(group_move_inside, ordinary_entries_may_move_into_a_keyword_that_stays) {
    root.get_entry(1u)->set_as_raw_text(true);
    root.move_entries(*b);
    EXPECT_TRUE(log.is_empty());
    EXPECT_EQ(b->get_entry_count(), 2u);
    EXPECT_EQ(root.get_entries().get_count(), 1u);
}

TEST_F(group_move_inside, entries_move_to_siblings_parents_and_other_trees) {
    root.move_entry(0, *b);
    b->get_entry(0u)->get_group(0)->move_entry(0, root);
    ParserGroup other(CoreString("other"));
    root.move_entry(2, *b);
    b->move_entries(other);
    root.move_entries(other, 0);
    EXPECT_TRUE(log.is_empty());
    EXPECT_EQ(root.get_entries().get_count(), 0u);
    EXPECT_EQ(written(other), "other { b { } c 1 a { #k <empty> } inner { deep { } } }");
}

TEST_F(group_move_inside, nothing_is_said_to_those_who_do_not_listen) {
    RecordingLog quiet(CoreLogHandler::level_error);
    const std::string before = written(root);
    root.move_entry(0, *a);
    EXPECT_TRUE(quiet.is_empty());
    EXPECT_EQ(written(root), before);
}

TEST_F(group_move_inside, a_million_groups_are_searched_without_recursion) {
    ParserGroup* at = deep;
    for (int level = 0; level < 1000000; ++level) {
        at = at->add_group(CoreString("x"));
    }
    root.move_entry(0, *at);
    EXPECT_EQ(log.take(), one_warning(one_refused));
    EXPECT_EQ(root.get_entry(0u)->get_group(0), a);
}

} // namespace
