#include "tests/support/nasty_tree.h"
#include "tests/support/path_reference.h"
#include "tests/support/random_path.h"

#include <gtest/gtest.h>

#include <chrono>

// The matcher keeps sets of states. The reference tries every way to match the steps with the levels of the
// tree.

TEST(path_search, finds_what_the_slow_reference_finds) {
    unsigned int found_count = 0;
    for (unsigned int seed = 0; seed < 400; ++seed) {
        ParserGroup root("root");
        NastyTree(seed).fill(root, 4);
        RandomPath paths(seed);
        for (int i = 0; i < 25; ++i) {
            const std::string path = paths.make();
            const bk_parser::ParsedPath parsed = bk_parser::parse_path(path);
            ASSERT_FALSE(parsed.error) << path << ": " << parsed.error->message;
            std::vector<const ParserEntry*> found;
            for (const ParserEntry& entry : bk_parser::find_all(root, path)) {
                found.push_back(&entry);
            }
            found_count += static_cast<unsigned int>(found.size());
            ASSERT_EQ(found, PathReference(root, parsed).found()) << path << ", tree " << seed;
            EXPECT_EQ(bk_parser::find(root, path), found.empty() ? nullptr : found.front()) << path;
        }
    }
    EXPECT_GT(found_count, 5000u) << "as a rule the paths find something";
}

TEST(path_search, a_path_of_many_stars_takes_no_exponential_time) {
    ParserGroup root("root");
    ParserGroup* group = &root;
    for (int i = 0; i < 400; ++i) {
        group = group->add_group("a");
        group->add_entry("a", 0, 0)->add_int(i);
    }
    std::string path;
    for (int i = 0; i < 200; ++i) {
        path += "**/a/";
    }
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(bk_parser::find(root, path + "b"), nullptr);
    unsigned int count = 0;
    for (const ParserEntry& entry : bk_parser::find_all(root, path + "**/a[@0>=0]")) {
        count += entry.get_value_count();
    }
    EXPECT_EQ(count, 201u) << "entries at depth 200 to 400, groups left out";
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
}

TEST(path_search, stars_that_follow_each_other_are_one) {
    const bk_parser::ParsedPath parsed = bk_parser::parse_path("**/**/a/**/**");
    EXPECT_EQ(parsed.steps.size(), 4u);
    EXPECT_TRUE(parsed.steps.back().is_any_name);
}

TEST(path_search, a_million_groups_are_searched_without_recursion) {
    ParserGroup root("root");
    ParserGroup* group = &root;
    std::string path;
    for (int i = 0; i < 1000000; ++i) {
        group = group->add_group("g");
        path += "g/";
    }
    ParserEntry* const last = group->add_entry("last", 0, 0);
    path += "last";
    EXPECT_EQ(bk_parser::find(root, "**/last"), last);
    EXPECT_EQ(bk_parser::find(root, path), last);
    EXPECT_TRUE(bk_parser::path_of(root, *last) == path);
    EXPECT_TRUE(bk_parser::PathIndex(root).path_of(*last) == path);
    unsigned int depth = 0;
    for (const bk_parser::Visit& visit : bk_parser::walk(root)) {
        depth = visit.depth();
    }
    EXPECT_EQ(depth, 1000000u);
}
