#include "parser/parser_entry.h"
#include "parser/parser_group.h"

#include "tests/support/counted_objects.h"
#include "tests/support/plain_text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace {

class entry_list : public testing::Test {
protected:
    NothingLeaks nothing_leaks;
    ParserEntry entry{CoreString("e"), ParserEntry::TYPE_ENTRY, 0, 0};

    void fill(const std::string& letters) {
        entry.reset();
        for (const char letter : letters) {
            entry.add_string(CoreString(&letter, 1));
        }
    }
    std::string letters() const {
        std::string result;
        for (unsigned int i = 0; i < entry.get_value_count(); ++i) {
            result += plain(entry.get_string(i));
        }
        return result;
    }
};

TEST_F(entry_list, a_value_is_moved_to_a_later_position) {
    fill("abcde");
    entry.move_value(0, 3);
    EXPECT_EQ(letters(), "bcdae");
    entry.move_value(0, 4);
    EXPECT_EQ(letters(), "cdaeb");
    entry.move_value(3, 4);
    EXPECT_EQ(letters(), "cdabe");
}

TEST_F(entry_list, a_value_is_moved_to_an_earlier_position) {
    fill("abcde");
    entry.move_value(3, 0);
    EXPECT_EQ(letters(), "dabce");
    entry.move_value(4, 0);
    EXPECT_EQ(letters(), "edabc");
    entry.move_value(2, 1);
    EXPECT_EQ(letters(), "eadbc");
}

TEST_F(entry_list, a_value_moved_to_its_own_position_stays) {
    fill("abc");
    entry.move_value(1, 1);
    EXPECT_EQ(letters(), "abc");
    entry.reset();
    entry.move_value(0, 0);
    EXPECT_EQ(entry.get_value_count(), 0u);
}

TEST_F(entry_list, every_move_in_a_list_is_a_rotation_of_what_lies_between) {
    for (unsigned int from = 0; from < 7; ++from) {
        for (unsigned int to = 0; to < 7; ++to) {
            std::string expected = "abcdefg";
            const char moved = expected[from];
            expected.erase(from, 1);
            expected.insert(to, 1, moved);
            fill("abcdefg");
            entry.move_value(from, to);
            EXPECT_EQ(letters(), expected) << from << " to " << to;
        }
    }
}

TEST_F(entry_list, moving_keeps_groups_spellings_and_bytes_with_their_values) {
    char bytes[] = "abc";
    OwnedWord word("1.500");
    auto* group = new CountedGroup;
    entry.add_group(group);
    entry.add_word(*word, ParserValue::TYPE_DOUBLE);
    entry.add_binary_data(bytes, 3);
    entry.move_value(0, 2);
    EXPECT_EQ(plain(entry.get_word(0)), "1.500");
    EXPECT_EQ(entry.get_binary_data_size(1), 3u);
    EXPECT_EQ(entry.get_group(2), group);
}

TEST_F(entry_list, the_value_at_a_position_is_removed) {
    fill("abcde");
    entry.remove_value(2u);
    EXPECT_EQ(letters(), "abde");
    entry.remove_value(0u);
    EXPECT_EQ(letters(), "bde");
    entry.remove_value(2u);
    EXPECT_EQ(letters(), "bd");
}

TEST_F(entry_list, removing_past_the_end_removes_nothing) {
    fill("abc");
    for (const unsigned int i : {3u, 99u, 0xFFFFFFFFu}) {
        entry.remove_value(i);
        EXPECT_EQ(letters(), "abc");
    }
    entry.reset();
    entry.remove_value(0u);
    EXPECT_EQ(entry.get_value_count(), 0u);
}

TEST_F(entry_list, many_values_are_removed_by_an_array_in_any_order_with_repeats) {
    fill("abcde");
    entry.remove_value(CoreBasicArray<unsigned int>{2, 0, 2, 99});
    EXPECT_EQ(letters(), "bde");
}

TEST_F(entry_list, many_values_are_removed_by_a_list_in_any_order_with_repeats) {
    fill("abcde");
    entry.remove_value(CoreList<unsigned int>{2, 0, 2, 99});
    EXPECT_EQ(letters(), "bde");
}

TEST_F(entry_list, an_empty_array_or_list_removes_nothing) {
    fill("abc");
    entry.remove_value(CoreBasicArray<unsigned int>());
    entry.remove_value(CoreList<unsigned int>());
    EXPECT_EQ(letters(), "abc");
}

TEST_F(entry_list, every_value_is_removed_and_new_ones_are_added) {
    fill("abc");
    entry.remove_value(CoreArray<unsigned int>{0, 1, 2});
    EXPECT_EQ(letters(), "");
    EXPECT_FALSE(entry.has_value());
    entry.add_string(CoreString("d"));
    EXPECT_EQ(letters(), "d");
}

TEST_F(entry_list, every_set_of_positions_leaves_the_others_in_order) {
    const std::string all = "abcdef";
    for (unsigned int set = 0; set < 64; ++set) {
        CoreList<unsigned int> indices;
        std::string expected;
        for (unsigned int i = 6; i-- > 0;) {
            if ((set >> i & 1) != 0) {
                indices.add(i);
            } else {
                expected += all[i];
            }
        }
        std::reverse(expected.begin(), expected.end());
        fill(all);
        entry.remove_value(indices);
        EXPECT_EQ(letters(), expected) << set;
    }
}

TEST_F(entry_list, a_removed_group_is_deleted_once) {
    for (int i = 0; i < 4; ++i) {
        entry.add_group(new CountedGroup);
    }
    ParserGroup* third = entry.get_group(2);
    entry.remove_value(CoreBasicArray<unsigned int>{1, 3, 1});
    EXPECT_EQ(CountedGroup::alive, 2);
    EXPECT_EQ(entry.get_group(1), third);
}

TEST_F(entry_list, an_entry_becomes_a_group_when_its_other_values_are_removed) {
    entry.add_int(1);
    entry.add_group(nullptr);
    EXPECT_FALSE(entry.is_group());
    entry.remove_value(0u);
    EXPECT_TRUE(entry.is_group());
}

TEST_F(entry_list, half_of_two_hundred_thousand_values_are_removed_at_once) {
    CoreList<unsigned int> odd;
    for (int i = 0; i < 200000; ++i) {
        entry.add_int(i);
        if (i % 2 == 1) {
            odd.add(static_cast<unsigned int>(i));
        }
    }
    entry.remove_value(odd);
    ASSERT_EQ(entry.get_value_count(), 100000u);
    for (unsigned int i = 0; i < 100000; ++i) {
        ASSERT_EQ(entry.get_int(i), static_cast<int>(2 * i));
    }
}

} // namespace
