#include "parser/parser_entry.h"
#include "parser/parser_group.h"
#include "parser/parser_word.h"

#include "tests/support/counted_objects.h"
#include "tests/support/plain_text.h"
#include "tests/support/tree_equal.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace {

/// A tree with values of every type, different for each number.
void fill(ParserGroup& group, int number, int depth = 4) {
    char bytes[] = "0123456789 and more bytes";
    OwnedWord word("1.50 and its own spelling");
    for (int i = 0; i < 4; ++i) {
        ParserEntry* entry =
            group.add_entry(CoreString(i % 2 == 0 ? "e" : "#a_keyword_of_some_length"), 0, 0);
        entry->add_int(number + i);
        entry->add_string(CoreString("a text that stands in a block"));
        entry->add_word(*word, ParserValue::TYPE_DOUBLE);
        entry->add_binary_data(bytes, static_cast<unsigned int>(number % 20));
        if (depth > 0) {
            fill(*entry->add_group(nullptr), number, depth - 1);
        }
    }
}

std::unique_ptr<ParserGroup> made_before_main() {
    auto group = std::make_unique<ParserGroup>(CoreString("made_before_main"));
    fill(*group, 7);
    return group;
}

// Made before main and destroyed after it.
const std::unique_ptr<ParserGroup> whole_process = made_before_main();

TEST(group_lifetime, a_tree_lives_from_before_main_to_after_it) {
    ParserGroup same(CoreString("made_before_main"));
    fill(same, 7);
    EXPECT_EQ(tree_difference(*whole_process, same), "");
    whole_process->get_entry(0u)->set_string(CoreString("changed, and longer than eleven"), 0);
    EXPECT_NE(tree_difference(*whole_process, same), "");
}

TEST(group_lifetime, a_tree_is_destroyed_on_another_thread_than_the_one_that_made_it) {
    const NothingLeaks nothing_leaks;
    auto group = std::make_unique<ParserGroup>(CoreString("group"));
    fill(*group, 1);
    group->add_entry(*new CountedEntry("counted"));
    std::thread([&] { group.reset(); }).join();
    EXPECT_EQ(CountedEntry::alive, 0);
}

TEST(group_lifetime, threads_make_copy_edit_and_destroy_trees_of_their_own) {
    std::vector<std::string> differences(4);
    std::vector<std::thread> threads;
    for (unsigned int t = 0; t < 4; ++t) {
        threads.emplace_back([t, &difference = differences[t]] {
            for (int round = 0; round < 20 && difference.empty(); ++round) {
                ParserGroup group(CoreString("group"));
                fill(group, static_cast<int>(t) + 1, 3);
                ParserGroup copy(group);
                difference = tree_difference(copy, group);
                group.remove_entry(CoreString("e"));
                copy.set(group);
                difference += tree_difference(copy, group);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(differences, std::vector<std::string>(4));
}

TEST(group_lifetime, trees_are_handed_from_thread_to_thread_while_others_are_made) {
    std::vector<std::unique_ptr<ParserGroup>> trees(8);
    for (int round = 0; round < 10; ++round) {
        std::vector<std::thread> threads;
        for (std::size_t t = 0; t < 4; ++t) {
            threads.emplace_back([t, round, &trees] {
                const std::size_t slot = (t + static_cast<std::size_t>(round) * 3) % trees.size();
                trees[slot] = std::make_unique<ParserGroup>(CoreString("group"));
                fill(*trees[slot], static_cast<int>(slot), 3);
            });
        }
        for (std::thread& thread : threads) {
            thread.join();
        }
    }
    for (std::size_t slot = 0; slot < trees.size(); ++slot) {
        ParserGroup same(CoreString("group"));
        fill(same, static_cast<int>(slot), 3);
        ASSERT_NE(trees[slot], nullptr);
        EXPECT_EQ(tree_difference(*trees[slot], same), "");
    }
}

TEST(group_lifetime, a_document_that_is_edited_again_and_again_stays_what_it_should_be) {
    ParserGroup group(CoreString("group"));
    for (int round = 0; round < 2000; ++round) {
        fill(group, round, 0);
        group.remove_entry(CoreString("e"));
        if (group.get_entries().get_count() > 20) {
            group.remove_entry(0u);
            group.remove_entry(0u);
        }
        ASSERT_EQ(group.get_entry_count(), 0u);
    }
    for (const ParserEntry* entry : group.get_entries()) {
        EXPECT_EQ(plain(entry->get_name()), "#a_keyword_of_some_length");
        EXPECT_EQ(plain(entry->get_word(2)), "1.50 and its own spelling");
    }
}

TEST(value_lifetime, threads_convert_binary_data_at_the_same_time) {
    std::vector<std::string> texts(4);
    std::vector<std::thread> threads;
    for (std::string& text : texts) {
        threads.emplace_back([&text] {
            char bytes[] = "\x01\xFF";
            text = written(ParserValue(bytes, 2));
            const ParserValue read(ParserValue::TYPE_BINARY_DATA, CoreString(std::string_view(text)));
            text += written(read);
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(texts, std::vector<std::string>(4, "0x01FF000100000x01FF00010000"));
}

} // namespace
