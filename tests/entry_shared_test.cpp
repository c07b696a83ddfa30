#include "parser/parser_entry.h"
#include "parser/parser_group.h"

#include "tests/support/counted_objects.h"
#include "tests/support/plain_text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

namespace {

std::unique_ptr<ParserEntry> make_entry(const char* name) {
    return std::make_unique<ParserEntry>(CoreString(name), ParserEntry::TYPE_ENTRY, 1, 2);
}

/// An entry with an int that was read from text, a string, bytes and a counted group.
std::unique_ptr<ParserEntry> make_full_entry(const char* name) {
    char bytes[] = "abc";
    OwnedWord number("007");
    auto entry = make_entry(name);
    entry->add_word(*number, ParserValue::TYPE_INT);
    entry->add_string(CoreString("a text that stands in a block"));
    entry->add_binary_data(bytes, 3);
    entry->add_group(new CountedGroup("g"));
    return entry;
}

const std::string full_values = " 007 \"a text that stands in a block\" 0x61626326010000 g { }";

class entry_shared : public testing::Test {
protected:
    NothingLeaks nothing_leaks;
    std::unique_ptr<ParserEntry> source = make_full_entry("source");
    std::unique_ptr<ParserEntry> target = make_entry("target");
};

TEST_F(entry_shared, every_field_is_copied) {
    source->set_template(CoreString("key"));
    source->set_array(true, 4);
    ParserEntry keyword(CoreString("#target"), ParserEntry::TYPE_KEYWORD, 8, 9);
    EXPECT_EQ(&(keyword = *source), &keyword);
    EXPECT_EQ(plain(keyword.get_name()), "source");
    EXPECT_EQ(keyword.get_type(), ParserEntry::TYPE_ENTRY);
    EXPECT_EQ(keyword.get_line(), 1u);
    EXPECT_EQ(keyword.get_column(), 2u);
    EXPECT_EQ(plain(keyword.get_template()), "key");
    EXPECT_EQ(keyword.get_array_count(), 4u);
    EXPECT_EQ(written(keyword), "source<key>[4]" + full_values);
}

TEST_F(entry_shared, both_entries_list_the_same_values) {
    *target = *source;
    EXPECT_EQ(&target->get_string(1), &source->get_string(1));
    EXPECT_EQ(target->get_binary_data(2), source->get_binary_data(2));
    EXPECT_EQ(target->get_group(3), source->get_group(3));
    EXPECT_EQ(CountedGroup::alive, 1);
}

TEST_F(entry_shared, a_change_of_a_value_is_seen_through_both) {
    *target = *source;
    source->set_int(5, 0);
    EXPECT_EQ(target->get_int(0), 5);
    target->set_string(CoreString("changed"), 0);
    EXPECT_EQ(plain(source->get_string(0)), "changed");
    source->get_group(3)->add_entry(CoreString("a"), 0, 0);
    EXPECT_EQ(target->get_group(3)->get_entry_count(), 1u);
    target->set_int(1, 3);
    EXPECT_EQ(source->get_int(3), 1);
    EXPECT_EQ(CountedGroup::alive, 0);
}

TEST_F(entry_shared, fields_are_not_shared) {
    source->set_template(CoreString("key"));
    *target = *source;
    target->rename(CoreString("renamed"));
    target->set_template(CoreString("other"));
    target->set_array(true, 1);
    EXPECT_EQ(written(*source), "source<key>" + full_values);
    source.reset();
    EXPECT_EQ(written(*target), "renamed<other>[1]" + full_values);
}

TEST_F(entry_shared, the_values_outlive_either_entry) {
    *target = *source;
    source.reset();
    EXPECT_EQ(written(*target), "source" + full_values);
    source = make_entry("new");
    *source = *target;
    target.reset();
    EXPECT_EQ(written(*source), "source" + full_values);
}

TEST_F(entry_shared, values_that_were_listed_before_die_with_their_last_list) {
    target->add_group(new CountedGroup);
    target->add_group(new CountedGroup);
    EXPECT_EQ(CountedGroup::alive, 3);
    *target = *source;
    EXPECT_EQ(CountedGroup::alive, 1);
    *source = *make_entry("empty");
    EXPECT_EQ(CountedGroup::alive, 1);
    *target = *source;
    EXPECT_EQ(CountedGroup::alive, 0);
}

TEST_F(entry_shared, each_list_is_edited_on_its_own) {
    *target = *source;
    target->add_int(8);
    source->remove_value(0u);
    source->move_value(0, 1);
    EXPECT_EQ(written(*target), "source" + full_values + " 8");
    EXPECT_EQ(written(*source), "source 0x61626326010000 \"a text that stands in a block\" g { }");
    target->remove_value(CoreBasicArray<unsigned int>{1, 3});
    EXPECT_EQ(CountedGroup::alive, 1);
    source->reset();
    EXPECT_EQ(CountedGroup::alive, 0);
    EXPECT_EQ(written(*target), "source 007 0x61626326010000 8");
}

TEST_F(entry_shared, new_values_of_one_side_are_unknown_to_the_other) {
    *target = *source;
    source->add_string(CoreString("mine"));
    target->add_string(CoreString("yours"));
    EXPECT_EQ(source->get_value_count(), 5u);
    EXPECT_EQ(plain(source->get_string(4)), "mine");
    EXPECT_EQ(plain(target->get_string(4)), "yours");
}

TEST_F(entry_shared, a_value_removed_from_one_side_is_still_changed_by_the_other) {
    *target = *source;
    source->remove_value(3u);
    target->set_int(1, 3);
    EXPECT_EQ(target->get_int(3), 1);
    EXPECT_EQ(source->get_value_count(), 3u);
}

TEST_F(entry_shared, a_shared_entry_is_copied_deeply) {
    *target = *source;
    ParserEntry copy(*target);
    source->set_int(5, 0);
    EXPECT_EQ(written(copy), "source" + full_values);
    copy.set_int(6, 0);
    EXPECT_EQ(target->get_int(0), 5);
    target->copy_from(*source);
    source->set_int(7, 0);
    EXPECT_EQ(target->get_int(0), 5);
    EXPECT_NE(target->get_group(3), source->get_group(3));
}

TEST_F(entry_shared, an_entry_assigned_to_itself_stays_as_it_was) {
    ParserEntry& same = *source;
    *source = same;
    EXPECT_EQ(written(*source), "source" + full_values);
    *target = *source;
    *source = same;
    EXPECT_EQ(written(*source), "source" + full_values);
    EXPECT_EQ(written(*target), "source" + full_values);
}

TEST_F(entry_shared, assigning_the_same_entry_twice_or_back_changes_nothing) {
    *target = *source;
    *target = *source;
    *source = *target;
    EXPECT_EQ(written(*source), "source" + full_values);
    EXPECT_EQ(target->get_group(3), source->get_group(3));
    source->reset();
    EXPECT_EQ(CountedGroup::alive, 1);
    EXPECT_EQ(written(*target), "source" + full_values);
}

TEST_F(entry_shared, empty_entries_share_nothing) {
    auto empty = make_entry("empty");
    *target = *empty;
    target->add_int(1);
    EXPECT_EQ(empty->get_value_count(), 0u);
    ParserGroup* group = empty->get_group(0);
    EXPECT_EQ(group->get_source_entry(), empty.get());
    EXPECT_EQ(target->get_value_count(), 1u);
}

TEST_F(entry_shared, an_entry_becomes_one_that_it_holds) {
    ParserEntry* inner = source->get_group(3)->add_entry(CoreString("inner"), 0, 0);
    inner->add_int(1);
    inner->add_group(new CountedGroup("deep"));
    EXPECT_EQ(CountedGroup::alive, 2);
    *source = *inner;
    EXPECT_EQ(written(*source), "inner 1 deep { }");
    EXPECT_EQ(CountedGroup::alive, 1);
}

TEST_F(entry_shared, the_text_of_a_shared_value_is_made_for_both) {
    source->set_double(0.5, 0);
    *target = *source;
    EXPECT_EQ(written(*target), written(*source));
    target->set_double(0.25, 0);
    EXPECT_EQ(plain(source->get_word(0)), "0.25");
}

/// A group that was added to one entry, in a value that another entry lists, too.
class entry_shared_source : public testing::Test {
protected:
    NothingLeaks nothing_leaks;
    std::unique_ptr<ParserEntry> source = make_entry("source");
    std::unique_ptr<ParserEntry> target = make_entry("target");
    ParserGroup* group = source->add_group(nullptr);

    void SetUp() override {
        source->add_int(1);
        *target = *source;
    }
};

TEST_F(entry_shared_source, stays_as_long_as_the_entry_lists_the_group) {
    EXPECT_EQ(group->get_source_entry(), source.get());
    source->move_value(0, 1);
    source->remove_value(0u);
    source->add_int(1);
    target.reset();
    EXPECT_EQ(group->get_source_entry(), source.get());
}

TEST_F(entry_shared_source, is_null_once_the_entry_has_died) {
    source.reset();
    EXPECT_EQ(target->get_group(0), group);
    EXPECT_EQ(group->get_source_entry(), nullptr);
}

TEST_F(entry_shared_source, is_null_once_the_entry_was_removed_from_its_group) {
    ParserGroup root(CoreString("root"));
    ParserGroup* const inner = root.add_group(CoreString("holder"));
    *target = *root.get_entry(0u);
    EXPECT_EQ(inner->get_source_entry(), root.get_entry(0u));
    root.remove_entry(0u);
    EXPECT_EQ(inner->get_source_entry(), nullptr);
}

TEST_F(entry_shared_source, is_null_once_the_entry_has_removed_the_value) {
    source->remove_value(0u);
    EXPECT_EQ(group->get_source_entry(), nullptr);
}

TEST_F(entry_shared_source, is_null_once_the_entry_was_reset) {
    source->reset();
    EXPECT_EQ(group->get_source_entry(), nullptr);
}

TEST_F(entry_shared_source, is_null_once_the_entry_has_copied_another) {
    source->copy_from(*make_entry("empty"));
    EXPECT_EQ(group->get_source_entry(), nullptr);
}

TEST_F(entry_shared_source, is_null_once_the_entry_was_assigned_another) {
    *source = *make_entry("empty");
    EXPECT_EQ(group->get_source_entry(), nullptr);
}

TEST_F(entry_shared_source, stays_when_the_group_is_assigned_back_at_any_place) {
    *source = *target;
    EXPECT_EQ(group->get_source_entry(), source.get());
    target->move_value(0, 1);
    *source = *target;
    EXPECT_EQ(source->get_group(1), group);
    EXPECT_EQ(group->get_source_entry(), source.get());
}

TEST_F(entry_shared_source, that_a_host_has_set_is_left_alone) {
    ParserEntry other(CoreString("other"), ParserEntry::TYPE_ENTRY, 0, 0);
    group->set_source_entry(&other);
    source.reset();
    EXPECT_EQ(group->get_source_entry(), &other);
}

/// What can happen to one of the entries that list the same values.
enum class Act { destroy, reset, remove_all, remove_one, add, copy_over, assign_empty, set_all, move };

void act(Act what, std::unique_ptr<ParserEntry>& entry) {
    switch (what) {
    case Act::destroy:
        entry = make_entry("replacement");
        break;
    case Act::reset:
        entry->reset();
        break;
    case Act::remove_all:
        entry->remove_value(CoreBasicArray<unsigned int>{3, 2, 1, 0});
        break;
    case Act::remove_one:
        entry->remove_value(3u);
        break;
    case Act::add:
        entry->add_group(new CountedGroup);
        break;
    case Act::copy_over:
        entry->copy_from(*make_full_entry("copied"));
        break;
    case Act::assign_empty:
        *entry = *make_entry("empty");
        break;
    case Act::set_all:
        for (unsigned int i = 0; i < entry->get_value_count(); ++i) {
            entry->set_string(CoreString("a text that stands in a block too"), i);
        }
        break;
    case Act::move:
        if (entry->get_value_count() != 0) {
            entry->move_value(0, entry->get_value_count() - 1);
        }
    }
}

const Act acts[] = {Act::destroy,   Act::reset,        Act::remove_all, Act::remove_one, Act::add,
                    Act::copy_over, Act::assign_empty, Act::set_all,    Act::move};

TEST(entry_shared_by_three, any_three_acts_in_any_order_leave_nothing_behind_and_nothing_dangling) {
    const NothingLeaks nothing_leaks;
    std::vector<unsigned int> order = {0, 1, 2};
    do {
        for (const Act first : acts) {
            for (const Act second : acts) {
                for (const Act third : acts) {
                    std::unique_ptr<ParserEntry> entries[] = {make_full_entry("a"), make_entry("b"),
                                                              make_entry("c")};
                    *entries[1] = *entries[0];
                    *entries[2] = *entries[1];
                    act(first, entries[order[0]]);
                    act(second, entries[order[1]]);
                    const std::string before = written(*entries[order[2]]);
                    entries[order[0]].reset();
                    EXPECT_EQ(written(*entries[order[2]]), before);
                    act(third, entries[order[2]]);
                    entries[order[2]].reset();
                    EXPECT_NE(written(*entries[order[1]]), "");
                }
            }
        }
    } while (std::next_permutation(order.begin(), order.end()));
}

} // namespace
