#include "parser/parser_entry.h"
#include "parser/parser_group.h"

#include "tests/support/counted_objects.h"
#include "tests/support/group_outline.h"
#include "tests/support/plain_text.h"

#include <gtest/gtest.h>

#include <string>

namespace {

class group_move : public testing::Test {
protected:
    NothingLeaks nothing_leaks;
    ParserGroup group{CoreString("group")};
    ParserGroup dest{CoreString("dest")};

    void SetUp() override { add_names(group, "a #k b"); }
};

TEST_F(group_move, an_entry_is_moved_to_a_later_position_and_the_indexes_follow) {
    group.move_entry(0, 2);
    EXPECT_EQ(outline(group), " #k (b) (a)");
    EXPECT_EQ(group.get_entry_count(), 2u);
    EXPECT_EQ(group.get_entry(0u), group.get_entries()[1]);
    EXPECT_EQ(group.get_entry(1u), group.get_entries()[2]);
    EXPECT_EQ(group.get_keyword(CoreString("#k")), group.get_entries()[0]);
}

TEST_F(group_move, an_entry_is_moved_to_an_earlier_position_and_the_indexes_follow) {
    group.move_entry(2, 0);
    EXPECT_EQ(outline(group), " (b) (a) #k");
    group.move_entry(2, 1);
    EXPECT_EQ(outline(group), " (b) #k (a)");
}

TEST_F(group_move, every_move_is_a_rotation_of_what_lies_between) {
    for (unsigned int from = 0; from < 6; ++from) {
        for (unsigned int to = 0; to < 6; ++to) {
            std::string expected = "abcdef";
            const char moved = expected[from];
            expected.erase(from, 1);
            expected.insert(to, 1, moved);
            group.clear();
            add_names(group, "a b c d e f");
            group.move_entry(from, to);
            std::string got;
            for (const ParserEntry* entry : group.get_entries()) {
                got += plain(entry->get_name());
            }
            EXPECT_EQ(got, expected) << from << " to " << to;
        }
    }
}

TEST_F(group_move, a_move_to_the_own_position_changes_nothing_but_the_indexes) {
    ParserEntry* a = group.get_entry(0u);
    a->set_as_raw_text(true);
    EXPECT_EQ(outline(group), " (a) #k (b)");
    group.move_entry(1, 1);
    EXPECT_EQ(outline(group), " a #k (b)");
    a->set_as_raw_text(false);
    group.move_entry(0, 0);
    EXPECT_EQ(outline(group), " (a) #k (b)");
    EXPECT_EQ(group.get_entries()[0], a);
}

TEST_F(group_move, an_entry_is_moved_to_the_end_of_another_group) {
    add_names(dest, "x #y");
    ParserEntry* a = group.get_entry(0u);
    group.move_entry(0, dest);
    EXPECT_EQ(outline(group), " #k (b)");
    EXPECT_EQ(outline(dest), " (x) #y (a)");
    EXPECT_EQ(dest.get_entry(1u), a);
    group.move_entry(0, dest);
    EXPECT_EQ(outline(group), " (b)");
    EXPECT_EQ(outline(dest), " (x) #y (a) #k");
    group.move_entry(0, dest);
    EXPECT_EQ(outline(group), "");
    EXPECT_EQ(group.get_entry_count(), 0u);
    EXPECT_EQ(outline(dest), " (x) #y (a) #k (b)");
}

TEST_F(group_move, the_position_may_be_the_count_of_the_other_group) {
    add_names(dest, "x");
    group.move_entry(dest.get_entries().get_count(), dest);
    EXPECT_EQ(outline(group), " (a) (b)");
    EXPECT_EQ(outline(dest), " (x) #k");
}

TEST_F(group_move, moving_one_out_rebuilds_the_indexes_here_and_extends_them_there) {
    add_names(dest, "x");
    group.get_entry(1u)->set_as_raw_text(true);
    dest.get_entry(0u)->set_as_raw_text(true);
    group.move_entry(1, dest);
    EXPECT_EQ(outline(group), " (a) b");
    EXPECT_EQ(outline(dest), " (x) #k");
    group.move_entry(1, dest);
    EXPECT_EQ(outline(dest), " (x) #k b");
    EXPECT_EQ(dest.get_keyword(CoreString("b")), dest.get_entries()[2]);
}

TEST_F(group_move, ordinary_entries_are_moved_to_the_end_of_another_group_and_others_stay) {
    add_names(dest, "x");
    group.move_entries(dest);
    EXPECT_EQ(outline(group), " #k");
    EXPECT_EQ(group.get_entry_count(), 0u);
    EXPECT_EQ(group.get_keyword(CoreString("#k")), group.get_entries()[0]);
    EXPECT_EQ(outline(dest), " (x) (a) (b)");
}

TEST_F(group_move, moving_the_ordinary_entries_goes_by_the_type_of_the_moment) {
    group.get_entry(0u)->set_as_raw_text(true);
    group.get_keyword(CoreString("#k"))->set_as_raw_text(false);
    group.move_entries(dest);
    EXPECT_EQ(outline(group), " a");
    EXPECT_EQ(group.get_keyword(CoreString("a")), group.get_entries()[0]);
    EXPECT_EQ(outline(dest), " (#k) (b)");
}

TEST_F(group_move, moving_the_ordinary_entries_extends_the_indexes_there) {
    add_names(dest, "x");
    dest.get_entry(0u)->set_as_raw_text(true);
    group.move_entries(dest);
    EXPECT_EQ(outline(dest), " (x) (a) (b)");
    dest.move_entry(0, 0);
    EXPECT_EQ(outline(dest), " x (a) (b)");
}

TEST_F(group_move, a_group_without_ordinary_entries_keeps_everything) {
    group.clear();
    add_names(group, "#k #l");
    group.move_entries(dest);
    EXPECT_EQ(outline(group), " #k #l");
    EXPECT_EQ(outline(dest), "");
}

TEST_F(group_move, all_entries_are_moved_to_a_position_of_another_group) {
    const char* expected[] = {" (a) #k (b) (x) #y (z)", " (x) (a) #k (b) #y (z)", " (x) #y (a) #k (b) (z)",
                              " (x) #y (z) (a) #k (b)"};
    for (unsigned int position = 0; position <= 3; ++position) {
        group.clear();
        dest.clear();
        add_names(group, "a #k b");
        add_names(dest, "x #y z");
        group.move_entries(dest, position);
        EXPECT_EQ(outline(dest), expected[position]);
        EXPECT_EQ(outline(group), "");
        EXPECT_EQ(group.get_entry_count(), 0u);
        EXPECT_EQ(group.get_entry(CoreString("a")), nullptr);
        EXPECT_EQ(group.get_keyword(CoreString("#k")), nullptr);
    }
}

TEST_F(group_move, entries_that_fit_the_storage_there_are_moved_into_it) {
    add_names(dest, "u v w x y");
    ASSERT_EQ(dest.get_entries().get_capacity(), 8u);
    ParserEntry* const* const storage = dest.get_entries().get_data();
    group.move_entries(dest, 4);
    EXPECT_EQ(outline(dest), " (u) (v) (w) (x) (a) #k (b) (y)");
    EXPECT_EQ(dest.get_entries().get_data(), storage);
}

TEST_F(group_move, entries_that_do_not_fit_get_storage_of_just_their_number) {
    add_names(dest, "x");
    group.move_entries(dest, 1);
    EXPECT_EQ(dest.get_entries().get_capacity(), 4u);
    add_names(group, "c d e");
    group.move_entries(dest, 0);
    EXPECT_EQ(dest.get_entries().get_capacity(), 7u);
    EXPECT_EQ(outline(dest), " (c) (d) (e) (x) (a) #k (b)");
}

TEST_F(group_move, moving_everything_rebuilds_the_indexes_there) {
    add_names(dest, "x");
    dest.get_entry(0u)->set_as_raw_text(true);
    group.get_entry(0u)->set_as_raw_text(true);
    group.move_entries(dest, 0);
    EXPECT_EQ(outline(dest), " a #k (b) x");
}

TEST_F(group_move, moving_everything_keeps_the_storage_of_the_emptied_group) {
    const unsigned int capacity = group.get_entries().get_capacity();
    group.move_entries(dest, 0);
    EXPECT_EQ(group.get_entries().get_capacity(), capacity);
    add_names(group, "c");
    EXPECT_EQ(outline(group), " (c)");
}

TEST_F(group_move, everything_is_moved_into_and_out_of_empty_groups) {
    group.move_entries(dest, 0);
    EXPECT_EQ(outline(dest), " (a) #k (b)");
    group.move_entries(dest, 3);
    EXPECT_EQ(outline(dest), " (a) #k (b)");
    group.move_entries(dest);
    EXPECT_EQ(outline(dest), " (a) #k (b)");
}

TEST_F(group_move, a_moved_entry_dies_with_the_group_it_was_moved_to) {
    group.add_entry(*new CountedEntry("one"));
    group.add_entry(*new CountedEntry("two"));
    group.add_entry(*new CountedEntry("#three", ParserEntry::TYPE_KEYWORD));
    group.move_entry(3, dest);
    group.move_entries(dest);
    group.clear();
    EXPECT_EQ(CountedEntry::alive, 2);
    dest.clear();
    EXPECT_EQ(CountedEntry::alive, 0);
}

TEST_F(group_move, an_entry_moved_to_its_own_group_goes_to_the_end) {
    group.move_entry(0, group);
    EXPECT_EQ(outline(group), " #k (b) (a)");
    group.move_entry(0, group);
    EXPECT_EQ(outline(group), " (b) (a) #k");
    group.move_entry(2, group);
    EXPECT_EQ(outline(group), " (b) (a) #k");
}

TEST_F(group_move, moving_a_groups_entries_to_itself_loses_none_and_doubles_none) {
    group.add_entry(*new CountedEntry("counted"));
    group.move_entries(group);
    EXPECT_EQ(group.get_entries().get_count(), 4u);
    EXPECT_EQ(group.get_entry_count(), 3u);
    for (unsigned int position = 0; position <= 4; ++position) {
        group.move_entries(group, position);
        EXPECT_EQ(group.get_entries().get_count(), 4u) << position;
        EXPECT_EQ(group.get_entry_count(), 3u) << position;
        for (const char* name : {"a", "b", "counted"}) {
            EXPECT_EQ(group.get_entries(CoreString(name), false).get_count(), 1u) << position;
        }
        EXPECT_NE(group.get_keyword(CoreString("#k")), nullptr);
    }
    EXPECT_EQ(CountedEntry::alive, 1);
}

TEST_F(group_move, a_hundred_thousand_entries_are_moved_at_once) {
    group.clear();
    for (int i = 0; i < 100000; ++i) {
        add_names(group, "e #k");
        add_names(dest, "x");
    }
    group.move_entries(dest, 50000);
    EXPECT_EQ(dest.get_entries().get_count(), 300000u);
    EXPECT_EQ(dest.get_entry_count(), 200000u);
    dest.move_entries(group);
    EXPECT_EQ(dest.get_entries().get_count(), 100000u);
    EXPECT_EQ(group.get_entry_count(), 200000u);
    EXPECT_EQ(group.get_entry(50000u), group.get_entry(CoreString("e")));
}

} // namespace
