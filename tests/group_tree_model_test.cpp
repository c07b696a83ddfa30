#include "parser/parser_entry.h"
#include "parser/parser_group.h"

#include "tests/support/plain_text.h"
#include "tests/support/tree_equal.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

namespace {

/// Random trees of moderate depth, for which a plain recursion gives the expected result.
class group_tree_model : public testing::TestWithParam<unsigned int> {
protected:
    std::mt19937 random{GetParam()};

    unsigned int below(unsigned int limit) { return static_cast<unsigned int>(random() % limit); }

    void fill(ParserGroup& group, unsigned int depth) {
        static const char* const names[] = {"a", "b", "x", "#k", "y<x>", "z[3]"};
        for (unsigned int count = below(6); count > 0; --count) {
            ParserEntry* entry = group.add_entry(CoreString(names[below(6)]), below(100), below(100));
            for (unsigned int values = below(4); values > 0; --values) {
                add_value(*entry, depth);
            }
        }
    }

    void add_value(ParserEntry& entry, unsigned int depth) {
        OwnedWord word("1.50");
        switch (below(5)) {
        case 0:
            return entry.add_int(static_cast<int>(below(1000)));
        case 1:
            return entry.add_string(CoreString("a text that stands in a block"));
        case 2:
            return entry.add_word(*word, ParserValue::TYPE_DOUBLE);
        default:
            if (depth > 0) {
                fill(*entry.add_group(nullptr), depth - 1);
            }
        }
    }

    static void search(const ParserGroup& group, const std::string& name, std::vector<ParserEntry*>& found) {
        for (unsigned int i = 0; i < group.get_entry_count(); ++i) {
            ParserEntry* entry = group.get_entry(i);
            if (plain(entry->get_name()) == name) {
                found.push_back(entry);
                continue;
            }
            for (unsigned int k = 0; k < entry->get_value_count(); ++k) {
                if (entry->is_value_group(k)) {
                    search(*entry->get_group(k), name, found);
                }
            }
        }
    }
};

TEST_P(group_tree_model, a_recursive_search_finds_what_a_plain_recursion_finds) {
    ParserGroup root(CoreString("root"));
    for (int i = 0; i < 5; ++i) {
        fill(root, 6);
    }
    for (const char* name : {"a", "b", "x", "#k", "y", "y<x>", "z[3]", "missing"}) {
        std::vector<ParserEntry*> expected;
        search(root, name, expected);
        const CoreVector<ParserEntry*> found = root.get_entries(CoreString(name), true);
        EXPECT_EQ(std::vector<ParserEntry*>(found.begin(), found.end()), expected) << name;
    }
}

TEST_P(group_tree_model, a_copy_says_the_same_and_shares_nothing) {
    ParserGroup root(CoreString("root"));
    for (int i = 0; i < 5; ++i) {
        fill(root, 6);
    }
    const std::string text = written(root);
    ParserGroup copy(root);
    EXPECT_EQ(tree_difference(copy, root), "");
    EXPECT_EQ(written(copy), text);
    root.clear();
    EXPECT_EQ(written(copy), text);
    ParserGroup target(CoreString("target"));
    fill(target, 3);
    target.set(copy);
    copy.clear();
    EXPECT_EQ(written(target), text);
}

INSTANTIATE_TEST_SUITE_P(seeds, group_tree_model, testing::Range(1u, 51u));

} // namespace
