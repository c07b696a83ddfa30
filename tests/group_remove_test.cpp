#include "parser/parser_entry.h"
#include "parser/parser_group.h"

#include "tests/support/counted_objects.h"
#include "tests/support/group_outline.h"
#include "tests/support/plain_text.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <string_view>

namespace {

class group_remove : public testing::Test {
protected:
    NothingLeaks nothing_leaks;
    ParserGroup group{CoreString("group")};

    void SetUp() override { add_names(group, "a #k b"); }
};

TEST_F(group_remove, entries_are_removed_by_positions_in_any_order_with_repeats) {
    group.remove_entries(CoreBasicArray<unsigned int>{0, 0, 17});
    EXPECT_EQ(outline(group), " #k (b)");
    EXPECT_EQ(group.get_entry(0u), group.get_entries()[1]);
    EXPECT_EQ(group.get_keyword(CoreString("#k")), group.get_entries()[0]);
    group.remove_entries(CoreBasicArray<unsigned int>{1, 0, 1});
    EXPECT_EQ(outline(group), "");
    EXPECT_EQ(group.get_entry_count(), 0u);
}

TEST_F(group_remove, no_positions_remove_nothing) {
    group.remove_entries(CoreBasicArray<unsigned int>());
    EXPECT_EQ(outline(group), " (a) #k (b)");
    group.remove_entries(CoreBasicArray<unsigned int>{3, 0xFFFFFFFFu});
    EXPECT_EQ(outline(group), " (a) #k (b)");
}

TEST_F(group_remove, every_set_of_positions_leaves_the_others_in_order) {
    const std::string names[] = {"a", "#b", "c", "#d", "#e", "f"};
    for (unsigned int set = 0; set < 64; ++set) {
        group.clear();
        CoreArray<unsigned int> positions;
        std::string expected;
        for (unsigned int i = 0; i < 6; ++i) {
            add_names(group, names[i]);
            if ((set >> i & 1) != 0) {
                positions.resize(positions.get_count() + 1);
                positions[positions.get_count() - 1] = i;
            } else {
                expected += names[i][0] == '#' ? " " + names[i] : " (" + names[i] + ")";
            }
        }
        group.remove_entries(positions);
        EXPECT_EQ(outline(group), expected) << set;
    }
}

TEST_F(group_remove, removing_by_positions_rebuilds_the_indexes) {
    group.get_entry(0u)->set_as_raw_text(true);
    group.remove_entries(CoreBasicArray<unsigned int>{2});
    EXPECT_EQ(outline(group), " a #k");
    group.get_keyword(CoreString("a"))->set_as_raw_text(false);
    group.remove_entries(CoreBasicArray<unsigned int>());
    EXPECT_EQ(outline(group), " (a) #k");
}

TEST_F(group_remove, one_entry_is_removed_by_its_position) {
    group.remove_entry(1u);
    EXPECT_EQ(outline(group), " (a) (b)");
    group.remove_entry(1u);
    EXPECT_EQ(outline(group), " (a)");
    group.remove_entry(0u);
    EXPECT_EQ(outline(group), "");
    group.remove_entry(0u);
    EXPECT_EQ(outline(group), "");
}

TEST_F(group_remove, a_position_past_the_end_removes_nothing_and_rebuilds_the_indexes) {
    group.get_entry(1u)->set_as_raw_text(true);
    group.remove_entry(3u);
    EXPECT_EQ(outline(group), " (a) #k b");
    group.get_keyword(CoreString("b"))->set_as_raw_text(false);
    group.remove_entry(0xFFFFFFFFu);
    EXPECT_EQ(outline(group), " (a) #k (b)");
}

TEST_F(group_remove, every_entry_of_a_name_is_removed_whatever_its_type) {
    add_names(group, "x c x");
    group.add_entry(*new CountedEntry("x", ParserEntry::TYPE_KEYWORD));
    group.add_entry(*new CountedEntry("x", ParserEntry::TYPE_RAW_TEXT));
    group.add_entry(*new CountedEntry("x", ParserEntry::TYPE_FUNCTION_CALL));
    group.add_entry(*new CountedEntry("x"));
    group.remove_entry(CoreString("x"));
    EXPECT_EQ(outline(group), " (a) #k (b) (c)");
    EXPECT_EQ(CountedEntry::alive, 0);
    EXPECT_EQ(group.get_entry(CoreString("x")), nullptr);
    EXPECT_EQ(group.get_keyword(CoreString("x")), nullptr);
    group.remove_entry(CoreString("#k"));
    EXPECT_EQ(outline(group), " (a) (b) (c)");
}

TEST_F(group_remove, a_name_that_is_not_there_removes_nothing_and_rebuilds_the_indexes) {
    group.get_entry(0u)->set_as_raw_text(true);
    group.remove_entry(CoreString("missing"));
    EXPECT_EQ(outline(group), " a #k (b)");
    group.remove_entry(CoreString());
    EXPECT_EQ(outline(group), " a #k (b)");
}

TEST_F(group_remove, the_name_may_be_that_of_an_entry_that_is_removed) {
    group.add_entry(CoreString("a_name_that_is_longer_than_eleven"), 0, 0);
    group.add_entry(CoreString("a_name_that_is_longer_than_eleven"), 0, 0);
    group.remove_entry(group.get_entry(2u)->get_name());
    EXPECT_EQ(outline(group), " (a) #k (b)");
    group.remove_entry(group.get_entry(0u)->get_name());
    EXPECT_EQ(outline(group), " #k (b)");
}

TEST_F(group_remove, entries_inside_groups_are_not_removed_by_name) {
    group.add_group(CoreString("g"))->add_entry(CoreString("a"), 0, 0);
    group.remove_entry(CoreString("a"));
    EXPECT_EQ(outline(group), " #k (b) (g)");
    EXPECT_EQ(group.get_entry(1u)->get_group(0)->get_entry_count(), 1u);
}

/// Records its line when it is destroyed.
class NotingEntry : public ParserEntry {
public:
    NotingEntry(std::string_view name, core_ulong line, std::string& notes)
        : ParserEntry(CoreString(name), TYPE_ENTRY, line, 0), notes_(notes) {}
    ~NotingEntry() override { notes_ += std::to_string(get_line()); }

private:
    std::string& notes_;
};

TEST_F(group_remove, entries_of_a_name_are_deleted_in_document_order) {
    std::string notes;
    group.add_entry(*new NotingEntry("x", 1, notes));
    group.add_entry(*new NotingEntry("y", 2, notes));
    group.add_entry(*new NotingEntry("x", 3, notes));
    group.add_entry(*new NotingEntry("x", 4, notes));
    group.remove_entry(CoreString("x"));
    EXPECT_EQ(notes, "134");
    group.clear();
    EXPECT_EQ(notes, "1342");
}

TEST_F(group_remove, what_is_removed_takes_everything_below_it_along) {
    for (int i = 0; i < 3; ++i) {
        auto* entry = new CountedEntry("e");
        entry->add_group(new CountedGroup)->add_entry(*new CountedEntry("below"));
        group.add_entry(*entry);
    }
    EXPECT_EQ(CountedEntry::alive, 6);
    group.remove_entry(3u);
    EXPECT_EQ(CountedEntry::alive, 4);
    group.remove_entries(CoreBasicArray<unsigned int>{3});
    EXPECT_EQ(CountedEntry::alive, 2);
    EXPECT_EQ(CountedGroup::alive, 1);
    group.remove_entry(CoreString("e"));
    EXPECT_EQ(CountedEntry::alive, 0);
    EXPECT_EQ(CountedGroup::alive, 0);
}

TEST_F(group_remove, half_of_two_hundred_thousand_entries_are_removed_at_once) {
    group.clear();
    CoreArray<unsigned int> odd(100000);
    for (unsigned int i = 0; i < 200000; ++i) {
        add_names(group, i % 4 < 2 ? "e" : "#k");
        if (i % 2 == 1) {
            odd[i / 2] = i;
        }
    }
    group.remove_entries(odd);
    EXPECT_EQ(group.get_entries().get_count(), 100000u);
    EXPECT_EQ(group.get_entry_count(), 50000u);
    group.remove_entry(CoreString("e"));
    EXPECT_EQ(group.get_entries().get_count(), 50000u);
    EXPECT_EQ(group.get_entry_count(), 0u);
}

class group_detach : public testing::Test {
protected:
    NothingLeaks nothing_leaks;
    std::unique_ptr<ParserGroup> group = std::make_unique<ParserGroup>(CoreString("group"));
    std::unique_ptr<ParserEntry> detached;

    void SetUp() override {
        add_names(*group, "#k a");
        group->add_entry(*new CountedEntry("counted"));
        add_names(*group, "b");
    }
    /// Detaches the entry with this ordinal. Its slot stays, empty.
    void detach(unsigned int ordinal) {
        detached.reset(group->get_entry(ordinal));
        group->detach_entry(ordinal);
    }
    void TearDown() override {
        ASSERT_NE(detached, nullptr);
        EXPECT_EQ(plain(detached->get_name()), "counted");
        EXPECT_EQ(CountedEntry::alive, 1);
        detached.reset();
        EXPECT_EQ(CountedEntry::alive, 0);
    }
};

TEST_F(group_detach, the_slot_becomes_null_and_nothing_else_changes) {
    detach(1);
    EXPECT_EQ(group->get_entry(1u), nullptr);
    EXPECT_EQ(group->get_entries()[2], nullptr);
    EXPECT_EQ(group->get_entries().get_count(), 4u);
    EXPECT_EQ(group->get_entry_count(), 3u);
    EXPECT_EQ(plain(group->get_entry(0u)->get_name()), "a");
    EXPECT_EQ(plain(group->get_entry(2u)->get_name()), "b");
    EXPECT_EQ(outline(*group), " #k (a) (null) (b)");
}

TEST_F(group_detach, the_empty_slot_is_removed_by_its_position) {
    detach(1);
    group->remove_entry(2u);
    EXPECT_EQ(outline(*group), " #k (a) (b)");
}

TEST_F(group_detach, the_empty_slot_is_removed_by_an_array_of_positions) {
    detach(1);
    group->remove_entries(CoreBasicArray<unsigned int>{2, 0});
    EXPECT_EQ(outline(*group), " (a) (b)");
}

TEST_F(group_detach, clear_skips_the_empty_slot) {
    detach(1);
    group->clear();
    EXPECT_EQ(group->get_entries().get_count(), 0u);
}

TEST_F(group_detach, the_destructor_skips_the_empty_slot) {
    detach(1);
    group.reset();
    EXPECT_EQ(detached->get_value_count(), 0u);
}

TEST_F(group_detach, a_detached_entry_is_adopted_by_another_group) {
    detach(1);
    group->remove_entry(2u);
    ParserGroup other(CoreString("other"));
    other.add_entry(*detached.release());
    group.reset();
    EXPECT_EQ(outline(other), " (counted)");
    detached.reset(other.get_entry(0u));
    other.detach_entry(0);
}

TEST_F(group_detach, a_group_deep_inside_another_is_destroyed_with_its_empty_slot) {
    ParserGroup outer(CoreString("outer"));
    detach(1);
    outer.add_entry(CoreString("e"), 0, 0)->add_group(group.release());
    outer.clear();
    EXPECT_EQ(outer.get_entries().get_count(), 0u);
}

TEST(group_clear, empty_slots_far_from_the_first_are_skipped) {
    ParserGroup many("many");
    add_names(many, "a b c d e f g h i j k l");
    delete many.get_entry(7u);
    many.detach_entry(7);
    delete many.get_entry(11u);
    many.detach_entry(11);
    many.clear();
    EXPECT_EQ(many.get_entries().get_count(), 0u);
}

} // namespace
