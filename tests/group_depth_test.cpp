#include "parser/parser_entry.h"
#include "parser/parser_group.h"

#include "tests/support/counted_objects.h"
#include "tests/support/deep.h"
#include "tests/support/plain_text.h"
#include "tests/support/tree_equal.h"

#include <gtest/gtest.h>

#include <memory>

namespace {

constexpr unsigned int depth = million_deep;

/// Nested groups, each in the only entry of the group around it, made by calls from the outside in. The
/// innermost has an entry "bottom".
class group_depth : public testing::Test {
protected:
    NothingLeaks nothing_leaks;
    std::unique_ptr<ParserGroup> root = std::make_unique<ParserGroup>(CoreString("root"));
    ParserGroup* innermost = nullptr;

    void SetUp() override {
        innermost = root.get();
        for (unsigned int level = 0; level < depth; ++level) {
            innermost = innermost->add_group(CoreString("g"));
        }
        innermost->add_entry(CoreString("bottom"), 0, 0)->add_int(7);
    }

    static unsigned int levels(const ParserGroup& group) {
        unsigned int count = 0;
        const ParserGroup* level = &group;
        while (level->get_entry_count() != 0 && level->get_entry(0u)->is_group()) {
            level = level->get_entry(0u)->get_group(0);
            ++count;
        }
        return count;
    }
};

TEST_F(group_depth, a_million_nested_groups_are_destroyed) {
    EXPECT_EQ(levels(*root), depth);
    innermost->add_entry(*new CountedEntry("counted"));
    root.reset();
    EXPECT_EQ(CountedEntry::alive, 0);
}

TEST_F(group_depth, a_million_nested_groups_are_cleared) {
    root->clear();
    EXPECT_EQ(root->get_entries().get_count(), 0u);
}

TEST_F(group_depth, a_million_nested_groups_are_removed_with_their_entry) {
    root->remove_entry(CoreString("g"));
    EXPECT_EQ(root->get_entries().get_count(), 0u);
}

TEST_F(group_depth, a_million_nested_groups_are_copied) {
    const ParserGroup copy(*root);
    EXPECT_EQ(levels(copy), depth);
    EXPECT_EQ(tree_difference(copy, *root), "");
    EXPECT_NE(copy.get_entry(0u), root->get_entry(0u));
}

TEST_F(group_depth, a_group_is_set_to_a_million_nested_groups) {
    ParserGroup target(CoreString("target"));
    target.set(*root);
    root.reset();
    EXPECT_EQ(levels(target), depth);
    target.set(ParserGroup(CoreString("empty")));
    EXPECT_EQ(levels(target), 0u);
}

TEST_F(group_depth, the_bottom_of_a_million_nested_groups_is_found) {
    const CoreVector<ParserEntry*> found = root->get_entries(CoreString("bottom"), true);
    ASSERT_EQ(found.get_count(), 1u);
    EXPECT_EQ(found[0], innermost->get_entry(0u));
    EXPECT_EQ(root->get_entries(CoreString("bottom"), false).get_count(), 0u);
    EXPECT_EQ(root->get_entries(CoreString("missing"), true).get_count(), 0u);
}

TEST_F(group_depth, entries_on_every_one_of_a_million_levels_are_found_in_order) {
    ParserGroup* level = root.get();
    for (unsigned int i = 0; i < depth; ++i) {
        ParserGroup* below = level->get_entry(0u)->get_group(0);
        level->add_entry(CoreString("x"), i, 0);
        if (i % 2 == 0) {
            level->move_entry(1, 0);
        }
        level = below;
    }
    const CoreVector<ParserEntry*> found = root->get_entries(CoreString("x"), true);
    ASSERT_EQ(found.get_count(), depth);
    // Entries before the group of their level are found on the way down, the others on the way up.
    for (unsigned int i = 0; i < depth / 2; ++i) {
        ASSERT_EQ(found[i]->get_line(), 2 * i);
        ASSERT_EQ(found[depth - 1 - i]->get_line(), 2 * i + 1);
    }
}

TEST_F(group_depth, a_million_nested_groups_are_shared_and_die_with_the_last_list) {
    innermost->add_entry(*new CountedEntry("counted"));
    ParserGroup other(CoreString("other"));
    other = *root;
    root.reset();
    EXPECT_EQ(levels(other), depth);
    EXPECT_EQ(CountedEntry::alive, 1);
    other.clear();
    EXPECT_EQ(CountedEntry::alive, 0);
}

TEST_F(group_depth, an_entry_detached_from_halfway_takes_the_rest_along) {
    ParserGroup* level = root.get();
    for (unsigned int i = 0; i < depth / 2; ++i) {
        level = level->get_entry(0u)->get_group(0);
    }
    std::unique_ptr<ParserEntry> detached(level->get_entry(0u));
    level->detach_entry(0);
    level->remove_entry(0u);
    root.reset();
    EXPECT_EQ(levels(*detached->get_group(0)), depth / 2 - 1);
}

TEST(group_depth_of_host_objects, nested_objects_of_a_hosts_own_classes_are_each_destroyed_once) {
    const NothingLeaks nothing_leaks;
    auto root = std::make_unique<CountedGroup>();
    ParserGroup* group = root.get();
    for (int level = 0; level < 300000; ++level) {
        auto* entry = new CountedEntry("e");
        auto* below = new CountedGroup;
        entry->add_group(below);
        group->add_entry(*entry);
        group = below;
    }
    EXPECT_EQ(CountedEntry::alive, 300000);
    root.reset();
    EXPECT_EQ(CountedEntry::alive, 0);
    EXPECT_EQ(CountedGroup::alive, 0);
}

TEST(group_depth_of_host_objects, a_deep_and_wide_tree_is_copied_searched_and_destroyed) {
    ParserGroup root(CoreString("root"));
    ParserGroup* group = &root;
    for (unsigned int level = 0; level < 100000; ++level) {
        group->add_entry(CoreString("x"), 0, 0)->add_int(1);
        group->add_entry(CoreString("#k"), 0, 0)->add_group(nullptr);
        ParserEntry* entry = group->add_entry(CoreString("e"), 0, 0);
        entry->add_group(nullptr)->add_entry(CoreString("x"), 0, 0);
        group = entry->add_group(nullptr);
        entry->add_group(nullptr)->add_entry(CoreString("x"), 0, 0);
    }
    EXPECT_EQ(root.get_entries(CoreString("x"), true).get_count(), 300000u);
    const ParserGroup copy(root);
    root.clear();
    EXPECT_EQ(copy.get_entries(CoreString("x"), true).get_count(), 300000u);
}

} // namespace
