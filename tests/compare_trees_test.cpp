#include "document/compare.h"
#include "document/load.h"
#include "document/path.h"
#include "tests/support/random_layout.h"

#include <gtest/gtest.h>

#include <chrono>

namespace {

using bk_parser::CompareOptions;
using bk_parser::TreeChange;

/// Each change as a word and a path.
std::string changes_of(std::string_view before, std::string_view after, const CompareOptions& options = {}) {
    static const char* const words[] = {"value", "head", "added", "removed", "moved", "renamed"};
    const bk_parser::LoadResult left = bk_parser::parse(before);
    const bk_parser::LoadResult right = bk_parser::parse(after);
    std::string text;
    for (const TreeChange& change :
         bk_parser::compare_trees(left.document.root(), right.document.root(), options)) {
        text += std::string(words[static_cast<int>(change.kind)]) + " ";
        text += change.after == nullptr ? bk_parser::path_of(left.document.root(), *change.before)
                                        : bk_parser::path_of(right.document.root(), *change.after);
        text += "\n";
    }
    return text;
}

TEST(compare_trees, trees_that_differ_in_layout_and_spelling_are_equal) {
    EXPECT_EQ(changes_of("a = 1.50, 2 // x\nb { c \"x\" }\n", "a 1.5 2\nb\n{ c \"x\"\n}"), "");
    EXPECT_EQ(changes_of("", ""), "");
}

TEST(compare_trees, every_value_that_differs_is_told) {
    EXPECT_EQ(changes_of("a 1 2 3\nb { c 1 d 2 }\n", "a 1 5 6\nb { c 1 d 3 }\n"),
              "value a\nvalue a\nvalue b/d\n");
    EXPECT_EQ(changes_of("a 1\n", "a 1.0\n"), "value a\n");
}

TEST(compare_trees, values_that_come_and_go_are_told_one_by_one) {
    const bk_parser::LoadResult left = bk_parser::parse("a 1 2 3 4\n");
    const bk_parser::LoadResult right = bk_parser::parse("a 1 3 4 5 6\n");
    const auto changes = bk_parser::compare_trees(left.document.root(), right.document.root());
    ASSERT_EQ(changes.size(), 3u);
    EXPECT_EQ(changes[0].value_before, 1u);
    EXPECT_EQ(changes[0].value_after, TreeChange::no_value);
    EXPECT_EQ(changes[1].value_after, 3u);
    EXPECT_EQ(changes[2].value_after, 4u);
}

TEST(compare_trees, kind_template_and_array_count_count) {
    EXPECT_EQ(changes_of("a 1\nb<x> 1\nc[2] 1\n", "a(1)\nb<y> 1\nc 1\n"), "head a\nhead b\nhead c\n");
}

TEST(compare_trees, siblings_are_matched_by_name_and_key) {
    EXPECT_EQ(
        changes_of("l \"a\" { p 1 } l \"b\" { p 2 } l \"c\" { p 3 }\n", "l \"a\" { p 1 } l \"c\" { p 4 }\n"),
        "removed l[\"b\"]\nvalue l[\"c\"]/p\n");
}

TEST(compare_trees, siblings_of_one_name_are_matched_by_likeness) {
    EXPECT_EQ(changes_of("l { p 1 q 2 r 3 } l { p 4 q 5 r 6 }\n", "l { p 4 q 5 r 7 }\n"),
              "removed l[0]\nvalue l/r\n");
}

TEST(compare_trees, what_stands_elsewhere_was_moved) {
    EXPECT_EQ(changes_of("a 1\nb 2\nc 3\n", "b 2\nc 3\na 1\n"), "moved a\n");
    EXPECT_EQ(changes_of("g { s { x 1 } } h { y 2 }\n", "g {} h { y 2 s { x 1 } }\n"), "moved h/s\n");
}

TEST(compare_trees, what_has_another_name_was_renamed) {
    EXPECT_EQ(changes_of("lamp { a 1 b 2 }\n", "lantern { a 1 b 2 }\n"), "renamed lantern\n");
    EXPECT_EQ(changes_of("lamp { a 1 b 2 c 3 d 4 }\n", "lantern { a 1 b 2 c 3 d 5 }\n"),
              "renamed lantern\nvalue lantern/d\n");
    EXPECT_EQ(changes_of("lamp { a 1 b 2 }\n", "x { y 7 }\n"), "added x\nremoved lamp\n");
}

TEST(compare_trees, order_may_be_ignored) {
    CompareOptions options;
    options.ignore_order = true;
    EXPECT_EQ(changes_of("a 1\nb { c 1 d 2 }\n", "b { d 2 c 1 }\na 1\n", options), "");
    EXPECT_EQ(changes_of("a 1\nb { c 1 d 2 }\n", "b { d 2 c 3 }\na 1\n", options), "value b/c\n");
}

TEST(compare_trees, numbers_within_the_tolerance_are_equal) {
    CompareOptions options;
    options.tolerance = 0.5;
    EXPECT_EQ(changes_of("a 1 2.0 3.0\n", "a 1.25 2.5 4.0\n", options), "value a\n");
    EXPECT_EQ(changes_of("a 1\nb \"1\"\n", "a 1\nb \"2\"\n", options), "value b\n");
}

TEST(compare_trees, deep_trees_cost_no_stack) {
    std::string text;
    for (int i = 0; i < 200000; ++i) {
        text += "a{";
    }
    const std::string end(200000, '}');
    const bk_parser::LoadResult left = bk_parser::parse(text + "b 1 " + end);
    const bk_parser::LoadResult right = bk_parser::parse(text + "b 2 " + end);
    EXPECT_EQ(bk_parser::compare_trees(left.document.root(), right.document.root()).size(), 1u);
}

TEST(compare_trees, random_edits_are_found_and_nothing_else) {
    unsigned int changed = 0;
    for (unsigned int seed = 0; seed < 3000; ++seed) {
        RandomLayout layout(seed);
        const std::string text = layout.files().front().second;
        bk_parser::LoadOptions options;
        options.follow_includes = false;
        const bk_parser::LoadResult left = bk_parser::parse(text, options);
        bk_parser::LoadResult right = bk_parser::parse(text, options);
        ASSERT_TRUE(bk_parser::compare_trees(left.document.root(), right.document.root()).empty()) << seed;
        layout.edit(right.document.root());
        CoreString before;
        CoreString after;
        left.document.root().get_text(before, false, true, 1);
        right.document.root().get_text(after, false, true, 1);
        const bool is_empty = bk_parser::compare_trees(left.document.root(), right.document.root()).empty();
        ASSERT_EQ(is_empty, before == after) << seed << "\n"
                                             << before.get_view() << "\n\n"
                                             << after.get_view();
        changed += is_empty ? 0 : 1;
    }
    EXPECT_GT(changed, 1000u);
}

/// `count` entries with the numbers 0, 1, 2, ... With `changed`, one number in 1000 is negative.
std::string many_entries(int count, bool changed) {
    std::string text;
    for (int i = 0; i < count; ++i) {
        text += "k " + std::to_string(changed && i % 1000 == 500 ? -i : i) + "\n";
    }
    return text;
}

TEST(compare_trees, time_is_near_linear_in_the_tree) {
    const auto seconds_for = [](int count) {
        const bk_parser::LoadResult left = bk_parser::parse(many_entries(count, false));
        const bk_parser::LoadResult right = bk_parser::parse(many_entries(count, true));
        const auto begin = std::chrono::steady_clock::now();
        EXPECT_EQ(bk_parser::compare_trees(left.document.root(), right.document.root()).size(),
                  static_cast<std::size_t>(count / 1000));
        return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
    };
    const double small = seconds_for(50000);
    EXPECT_LT(seconds_for(400000), 40 * small + 0.5); // quadratic time would be 64 times as long
}

} // namespace
