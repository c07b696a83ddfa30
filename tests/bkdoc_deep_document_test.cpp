#include "tests/support/bkdoc_run.h"

#include <gtest/gtest.h>

namespace {

constexpr std::size_t million = 1'000'000;

std::string nested(std::string_view inside, std::size_t depth = million) {
    std::string text;
    text.reserve(depth * 3 + inside.size());
    for (std::size_t i = 0; i < depth; ++i) {
        text += "a{";
    }
    text += inside;
    text.append(depth, '}');
    return text + "\n";
}

TEST(bkdoc_deep_document, check_finds_the_fault_at_the_bottom_of_a_million_groups) {
    const BkdocRun run = run_bkdoc({"check", "-"}, nested("b @ 1"));
    EXPECT_EQ(run.code, 1);
    EXPECT_TRUE(run.out.starts_with("<stdin>:1:2000003: error: unexpected '@' [unexpected-word]\n"))
        << run.out.substr(0, 200);
}

TEST(bkdoc_deep_document, info_counts_a_million_groups) {
    const BkdocRun run = run_bkdoc({"info", "-"}, nested("b 1"));
    EXPECT_EQ(run.code, 0);
    EXPECT_NE(run.out.find("\ndepth         1,000,001\n"), std::string::npos) << run.out;
}

TEST(bkdoc_deep_document, cat_writes_a_million_groups_on_one_line) {
    const BkdocRun run = run_bkdoc({"cat", "--compact", "-"}, nested("b 1"));
    EXPECT_EQ(run.code, 0);
    EXPECT_TRUE(run.out.ends_with(" } } }\n"));
}

TEST(bkdoc_deep_document, tree_draws_more_groups_than_a_stack_would_hold) {
    const BkdocRun run = run_bkdoc({"tree", "-"}, nested("b 1", 250'000));
    EXPECT_EQ(run.code, 0);
    EXPECT_TRUE(run.out.ends_with("…250001 └── b  int  1\n"));
}

TEST(bkdoc_deep_document, same_finds_the_difference_below_a_million_groups) {
    const ScratchFolder folder;
    const std::string first = folder.write("a.bkd", nested("b 1"));
    const std::string second = folder.write("b.bkd", nested("b 2"));
    const BkdocRun run = run_bkdoc({"same", first, second});
    EXPECT_EQ(run.code, 1);
    EXPECT_NE(run.out.find("differ at a/a/a/a/a/a/a/a/(999,985 more)/a/a/a/a/a/a/a/b, value 1:\n"),
              std::string::npos)
        << run.out;
}

} // namespace
