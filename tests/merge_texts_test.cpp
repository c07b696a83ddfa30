#include "document/load.h"
#include "document/merge.h"
#include "tests/support/random_layout.h"

#include <gtest/gtest.h>

namespace {

using bk_parser::merge_texts;

std::string merged(std::string_view base, std::string_view ours, std::string_view theirs) {
    const bk_parser::MergeResult result = merge_texts(base, ours, theirs);
    EXPECT_EQ(result.reason, "");
    EXPECT_EQ(result.conflicts, 0u) << result.text;
    return result.text;
}

constexpr std::string_view base = "// head\na 1 // of a\n\nb {\n  c 1\n  d 2 // of d\n}\ne 5\n";

TEST(merge_texts, what_one_side_changed_is_taken_from_it) {
    EXPECT_EQ(merged(base, base, base), base);
    EXPECT_EQ(merged(base, "// head\na 2 // of a\n\nb {\n  c 1\n  d 2 // of d\n}\ne 5\n",
                     "// head\na 1 // of a\n\nb {\n  c 1\n  d 2 // of d\n}\ne 6\n"),
              "// head\na 2 // of a\n\nb {\n  c 1\n  d 2 // of d\n}\ne 6\n");
}

TEST(merge_texts, groups_are_merged_entry_by_entry) {
    EXPECT_EQ(merged(base, "// head\na 1 // of a\n\nb {\n  c 9\n  d 2 // of d\n}\ne 5\n",
                     "// head\na 1 // of a\n\nb {\n  c 1\n  d 8 // of d\n  new 1\n}\ne 5\n"),
              "// head\na 1 // of a\n\nb {\n  c 9\n  d 8 // of d\n  new 1\n}\ne 5\n");
}

TEST(merge_texts, what_was_added_and_removed_is) {
    EXPECT_EQ(merged(base, "// head\na 1 // of a\nnew 1\n\nb {\n  c 1\n  d 2 // of d\n}\ne 5\n",
                     "// head\na 1 // of a\n\nb {\n  d 2 // of d\n}\ne 5\nlast 7\n"),
              "// head\na 1 // of a\nnew 1\n\nb {\n  d 2 // of d\n}\ne 5\nlast 7\n");
}

TEST(merge_texts, what_both_did_alike_is_done_once) {
    EXPECT_EQ(merged("a 1\n", "a 2\nb 1\n", "a 2\nb 1\n"), "a 2\nb 1\n");
}

TEST(merge_texts, our_layout_stays_when_only_theirs_was_laid_out_anew) {
    EXPECT_EQ(merged("a 1\nb { c 1 }\n", "a 1\nb { c 2 }\n", "a  1\nb {\n    c 1\n}\n"), "a 1\nb { c 2 }\n");
}

TEST(merge_texts, the_order_of_theirs_is_taken_when_only_they_changed_it) {
    EXPECT_EQ(merged("a 1\nb 2\nc 3\n", "a 1\nb 9\nc 3\n", "c 3\na 1\nb 2\n"), "c 3\na 1\nb 9\n");
}

TEST(merge_texts, conflicts_are_marked_and_counted) {
    const bk_parser::MergeResult result =
        merge_texts("a 1\nb { c 1 d 2 }\ne 5\n", "a 2\nb { c 1 d 2 }\ne 6\n", "a 3\nb { c 1 d 2 }\n");
    EXPECT_EQ(result.conflicts, 2u);
    EXPECT_EQ(result.text, "<<<<<<< ours\na 2\n=======\na 3\n>>>>>>> theirs\nb { c 1 d 2 }\n"
                           "<<<<<<< ours\ne 6\n=======\n>>>>>>> theirs\n");
}

TEST(merge_texts, a_conflict_inside_a_group_leaves_the_rest_of_it_merged) {
    const bk_parser::MergeResult result =
        merge_texts("g {\n  a 1\n  b 2\n}\n", "g {\n  a 2\n  b 2\n}\n", "g {\n  a 3\n  b 4\n}\n");
    EXPECT_EQ(result.conflicts, 1u);
    EXPECT_EQ(result.text, "g {\n<<<<<<< ours\n  a 2\n=======\n  a 3\n>>>>>>> theirs\n  b 4\n}\n");
}

TEST(merge_texts, entries_of_one_name_are_told_apart_by_their_keys) {
    EXPECT_EQ(merged("l \"a\" { p 1 }\nl \"b\" { p 2 }\n", "l \"b\" { p 2 }\n",
                     "l \"a\" { p 1 }\nl \"b\" { p 3 }\n"),
              "l \"b\" { p 3 }\n");
}

TEST(merge_texts, entries_that_share_a_line_stay_apart) {
    EXPECT_EQ(merged("a 1 b 2 c 3", "a 1 b 2 c 3 // end", "a 1 c 3 d 4"), "a 1 c 3 // end\n d 4");
}

TEST(merge_texts, includes_and_comments_at_the_end_are_merged) {
    EXPECT_EQ(merged("#include \"x\"\na 1\n// end\n", "#include \"x\"\n#include \"y\"\na 1\n// end\n",
                     "#include \"x\"\na 1\n// the end\n"),
              "#include \"x\"\n#include \"y\"\na 1\n// the end\n");
}

TEST(merge_texts, texts_with_errors_and_other_forms_are_refused) {
    EXPECT_EQ(merge_texts("a 1\n", "UDFS", "a )\n").reason, "ours is not text");
    EXPECT_EQ(merge_texts("a 1\n", "a 1\n", "a 1// x\n2\n").reason,
              "in theirs a comment or a directive touches a word; put a blank between them");
}

TEST(merge_texts, errors_are_told_with_their_places) {
    const bk_parser::MergeResult result = merge_texts("a 1\n", "b 2\na 1 )\n", "c )\nc )\n");
    EXPECT_EQ(result.reason, "ours has errors");
    ASSERT_EQ(result.problems.size(), 3u);
    EXPECT_EQ(result.problems[0].file, "ours");
    EXPECT_EQ(result.problems[0].line, 2u);
    EXPECT_EQ(result.problems[0].column, 5u);
    EXPECT_EQ(result.problems[0].code, "bad-arguments");
    EXPECT_EQ(result.problems[1].file, "theirs");
    EXPECT_EQ(result.problems[2].file, "theirs");
    EXPECT_EQ(result.problems[2].line, 2u);
    EXPECT_TRUE(result.text.empty());
}

TEST(merge_texts, warnings_do_not_keep_texts_from_being_merged) {
    const bk_parser::MergeResult result = merge_texts("a 1\n", "a 1E5\n", "a 1\n");
    EXPECT_TRUE(result.ok()) << result.reason;
    EXPECT_TRUE(result.problems.empty());
}

std::string tree_of(std::string_view text) {
    bk_parser::LoadOptions options;
    options.follow_includes = false;
    const bk_parser::LoadResult result = bk_parser::parse(text, options);
    CoreString tree;
    result.document.root().get_text(tree, false, true, 1);
    return std::string(tree.get_view());
}

TEST(merge_texts, a_side_that_changed_nothing_gives_way_to_the_other) {
    unsigned int merged_count = 0;
    for (unsigned int seed = 0; seed < 2000; ++seed) {
        const RandomLayout ours_layout(seed);
        const RandomLayout theirs_layout(seed + 1);
        const std::string& text = ours_layout.files().front().second;
        const std::string& other = theirs_layout.files().front().second;
        const bk_parser::MergeResult same = merge_texts(text, text, text);
        if (!same.ok()) {
            continue;
        }
        ASSERT_EQ(same.text, text) << seed;
        const bk_parser::MergeResult mine = merge_texts(text, other, text);
        const bk_parser::MergeResult yours = merge_texts(text, text, other);
        if (!mine.ok() || !yours.ok()) {
            continue;
        }
        ++merged_count;
        ASSERT_EQ(mine.conflicts + yours.conflicts, 0u) << seed;
        ASSERT_EQ(tree_of(mine.text), tree_of(other)) << seed;
        ASSERT_EQ(tree_of(yours.text), tree_of(other)) << seed << "\n" << text << "\n--\n" << other;
    }
    EXPECT_GT(merged_count, 500u);
}

} // namespace
