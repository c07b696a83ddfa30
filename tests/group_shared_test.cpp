#include "parser/parser_entry.h"
#include "parser/parser_group.h"

#include "tests/support/counted_objects.h"
#include "tests/support/group_outline.h"
#include "tests/support/plain_text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

namespace {

/// A group of two ordinary entries, a keyword between them, and a nested group. Three of the objects are
/// counted.
std::unique_ptr<ParserGroup> make_full_group(const char* name) {
    auto group = std::make_unique<ParserGroup>(CoreString(name));
    group->add_entry(*new CountedEntry("a"));
    group->add_entry(*new CountedEntry("#k", ParserEntry::TYPE_KEYWORD));
    group->add_entry(CoreString("b"), 0, 0)->add_group(new CountedGroup);
    return group;
}

std::unique_ptr<ParserGroup> make_group(const char* name) {
    return std::make_unique<ParserGroup>(CoreString(name));
}

class group_shared : public testing::Test {
protected:
    NothingLeaks nothing_leaks;
    std::unique_ptr<ParserGroup> source = make_full_group("source");
    std::unique_ptr<ParserGroup> target = make_group("target");
};

TEST_F(group_shared, name_entries_indexes_and_source_entry_are_copied) {
    ParserEntry holder(CoreString("holder"), ParserEntry::TYPE_ENTRY, 0, 0);
    source->set_source_entry(&holder);
    EXPECT_EQ(&(*target = *source), target.get());
    EXPECT_EQ(plain(target->get_name()), "source");
    EXPECT_EQ(target->get_source_entry(), &holder);
    EXPECT_EQ(outline(*target), " (a) #k (b)");
    for (unsigned int i = 0; i < 3; ++i) {
        EXPECT_EQ(target->get_entries()[i], source->get_entries()[i]);
    }
    EXPECT_EQ(CountedEntry::alive, 2);
}

TEST_F(group_shared, indexes_are_copied_as_they_stand) {
    source->get_entry(0u)->set_as_raw_text(true);
    *target = *source;
    EXPECT_EQ(outline(*target), " (a) #k (b)");
    target->move_entry(0, 0);
    EXPECT_EQ(outline(*target), " a #k (b)");
    EXPECT_EQ(outline(*source), " (a) #k (b)");
}

TEST_F(group_shared, a_change_of_an_entry_is_seen_through_both) {
    *target = *source;
    source->get_entry(0u)->add_int(1);
    target->get_entry(0u)->rename(CoreString("renamed"));
    EXPECT_EQ(target->get_entry(0u)->get_int(0), 1);
    EXPECT_EQ(plain(source->get_entry(0u)->get_name()), "renamed");
}

TEST_F(group_shared, the_entries_outlive_either_group) {
    *target = *source;
    source.reset();
    EXPECT_EQ(outline(*target), " (a) #k (b)");
    source = make_group("new");
    *source = *target;
    target.reset();
    EXPECT_EQ(outline(*source), " (a) #k (b)");
    EXPECT_EQ(CountedEntry::alive, 2);
}

TEST_F(group_shared, entries_that_were_listed_before_die_with_their_last_list) {
    target->add_entry(*new CountedEntry("old"));
    *target = *source;
    EXPECT_EQ(CountedEntry::alive, 2);
    *source = *make_group("empty");
    EXPECT_EQ(CountedEntry::alive, 2);
    *target = *source;
    EXPECT_EQ(CountedEntry::alive, 0);
    EXPECT_EQ(CountedGroup::alive, 0);
}

TEST_F(group_shared, each_list_is_edited_on_its_own) {
    *target = *source;
    target->add_entry(CoreString("c"), 0, 0);
    source->move_entry(0, 2);
    source->remove_entry(CoreString("#k"));
    EXPECT_EQ(outline(*target), " (a) #k (b) (c)");
    EXPECT_EQ(outline(*source), " (b) (a)");
    EXPECT_EQ(CountedEntry::alive, 2);
    target->remove_entry(1u);
    EXPECT_EQ(CountedEntry::alive, 1);
    source->clear();
    EXPECT_EQ(CountedEntry::alive, 1);
    EXPECT_EQ(outline(*target), " (a) (b) (c)");
}

TEST_F(group_shared, entries_moved_on_from_one_side_stay_on_the_other) {
    ParserGroup third(CoreString("third"));
    *target = *source;
    source->move_entries(third, 0);
    EXPECT_EQ(outline(*target), " (a) #k (b)");
    EXPECT_EQ(outline(third), " (a) #k (b)");
    source.reset();
    target->clear();
    EXPECT_EQ(CountedEntry::alive, 2);
    third.remove_entry(0u);
    EXPECT_EQ(CountedEntry::alive, 1);
}

TEST_F(group_shared, an_entry_moved_to_a_group_that_lists_it_already_is_listed_twice) {
    *target = *source;
    source->move_entry(0, *target);
    EXPECT_EQ(outline(*source), " #k (b)");
    EXPECT_EQ(target->get_entries().get_count(), 4u);
    EXPECT_EQ(target->get_entries()[0], target->get_entries()[3]);
    target->remove_entry(0u);
    EXPECT_EQ(outline(*target), " #k (b) (a)");
    EXPECT_EQ(CountedEntry::alive, 2);
    target->remove_entry(2u);
    EXPECT_EQ(CountedEntry::alive, 1);
}

TEST_F(group_shared, an_entry_listed_twice_is_removed_twice_by_its_name) {
    *target = *source;
    source->move_entries(*target);
    EXPECT_EQ(target->get_entries().get_count(), 5u);
    target->remove_entry(CoreString("a"));
    EXPECT_EQ(CountedEntry::alive, 1);
    EXPECT_EQ(target->get_entries().get_count(), 3u);
    target->remove_entries(CoreBasicArray<unsigned int>{1, 2});
    EXPECT_EQ(CountedGroup::alive, 0);
}

TEST_F(group_shared, an_entry_detached_from_one_side_stays_on_the_other) {
    ParserGroup third(CoreString("third"));
    *target = *source;
    ParserEntry* entry = source->get_entry(0u);
    source->detach_entry(0);
    source->remove_entry(0u);
    EXPECT_EQ(target->get_entry(0u), entry);
    third.add_entry(*entry);
    target.reset();
    EXPECT_EQ(third.get_entry(0u), entry);
    EXPECT_EQ(CountedEntry::alive, 2);
    third.clear();
    EXPECT_EQ(CountedEntry::alive, 1);
}

TEST_F(group_shared, a_shared_group_is_copied_deeply) {
    *target = *source;
    const ParserGroup copy(*target);
    EXPECT_NE(copy.get_entry(0u), source->get_entry(0u));
    target->set(*source);
    EXPECT_NE(target->get_entry(0u), source->get_entry(0u));
    EXPECT_EQ(outline(*target), " (a) #k (b)");
    EXPECT_EQ(CountedEntry::alive, 2);
    source->clear();
    EXPECT_EQ(CountedEntry::alive, 0);
    EXPECT_EQ(written(*target), "source { a <empty> #k <empty> b counted { } }");
}

TEST_F(group_shared, a_group_assigned_to_itself_stays_as_it_was) {
    ParserGroup& same = *source;
    *source = same;
    EXPECT_EQ(outline(*source), " (a) #k (b)");
    *target = *source;
    *source = same;
    *target = *source;
    *source = *target;
    EXPECT_EQ(outline(*source), " (a) #k (b)");
    source->clear();
    EXPECT_EQ(outline(*target), " (a) #k (b)");
    EXPECT_EQ(CountedEntry::alive, 2);
}

TEST_F(group_shared, a_group_set_to_one_that_shares_its_entries_has_copies) {
    *target = *source;
    source->set(*target);
    EXPECT_NE(source->get_entry(0u), target->get_entry(0u));
    EXPECT_EQ(outline(*source), " (a) #k (b)");
    target.reset();
    EXPECT_EQ(CountedEntry::alive, 0);
}

TEST_F(group_shared, a_group_becomes_one_that_it_holds) {
    ParserGroup* inner = source->get_entry(1u)->get_group(0);
    inner->add_entry(*new CountedEntry("deep"));
    EXPECT_EQ(CountedEntry::alive, 3);
    *source = *inner;
    EXPECT_EQ(outline(*source), " (deep)");
    EXPECT_EQ(plain(source->get_name()), "counted");
    EXPECT_EQ(CountedEntry::alive, 1);
    EXPECT_EQ(CountedGroup::alive, 0);
}

/// What can happen to one of the groups that list the same entries.
enum class Act {
    destroy,
    clear,
    remove_all,
    remove_name,
    add,
    set_over,
    assign_empty,
    move_out,
    move_all_out,
    move
};

void act(Act what, std::unique_ptr<ParserGroup>& group, ParserGroup& elsewhere) {
    switch (what) {
    case Act::destroy:
        group = make_group("replacement");
        break;
    case Act::clear:
        group->clear();
        break;
    case Act::remove_all:
        group->remove_entries(CoreBasicArray<unsigned int>{2, 1, 0});
        break;
    case Act::remove_name:
        group->remove_entry(CoreString("a"));
        break;
    case Act::add:
        group->add_entry(*new CountedEntry("new"));
        break;
    case Act::set_over:
        group->set(*make_full_group("copied"));
        break;
    case Act::assign_empty:
        *group = *make_group("empty");
        break;
    case Act::move_out:
        group->move_entries(elsewhere);
        break;
    case Act::move_all_out:
        group->move_entries(elsewhere, 0);
        break;
    case Act::move:
        if (group->get_entries().get_count() != 0) {
            group->move_entry(0, group->get_entries().get_count() - 1);
        }
    }
}

const Act acts[] = {Act::destroy,  Act::clear,        Act::remove_all, Act::remove_name,  Act::add,
                    Act::set_over, Act::assign_empty, Act::move_out,   Act::move_all_out, Act::move};

TEST(group_shared_by_three, any_three_acts_in_any_order_leave_nothing_behind_and_nothing_dangling) {
    const NothingLeaks nothing_leaks;
    std::vector<unsigned int> order = {0, 1, 2};
    do {
        for (const Act first : acts) {
            for (const Act second : acts) {
                for (const Act third : acts) {
                    ParserGroup elsewhere(CoreString("elsewhere"));
                    std::unique_ptr<ParserGroup> groups[] = {make_full_group("a"), make_group("b"),
                                                             make_group("c")};
                    *groups[1] = *groups[0];
                    *groups[2] = *groups[1];
                    act(first, groups[order[0]], elsewhere);
                    act(second, groups[order[1]], elsewhere);
                    const std::string before = written(*groups[order[2]]);
                    groups[order[0]].reset();
                    EXPECT_EQ(written(*groups[order[2]]), before);
                    act(third, groups[order[2]], elsewhere);
                    groups[order[2]].reset();
                    EXPECT_NE(written(*groups[order[1]]) + written(elsewhere), "");
                }
            }
        }
    } while (std::next_permutation(order.begin(), order.end()));
}

} // namespace
