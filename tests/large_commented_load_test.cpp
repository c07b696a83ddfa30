#include "document/document.h"
#include "tests/support/scratch_folder.h"

#include <gtest/gtest.h>

#include <string>

namespace {

/// A text that is large enough that a load frees it before it parses.
std::string make_text(const std::string& line_end, const std::string& fault) {
    std::string text = "#Brellwick_Serial_Version 1.2" + line_end;
    for (int i = 0; i < 140000; ++i) {
        text += "entry_" + std::to_string(i) + " \"\xC3\xA4\" // says something" + line_end;
        if (i % 9000 == 5000) {
            text += fault + line_end;
        }
    }
    return text + "// the end";
}

void expect_same_problems(const std::string& text) {
    const ScratchFolder folder;
    const std::string path = folder.write("large.bkd", text);
    bk_parser::LoadOptions keeping;
    keeping.keep_sources = true;
    const bk_parser::LoadResult kept = bk_parser::load(path, keeping);
    const bk_parser::LoadResult freed = bk_parser::load(path);
    EXPECT_TRUE(bk_parser::to_text(freed.document.root()) == bk_parser::to_text(kept.document.root()));
    ASSERT_FALSE(kept.problems.empty());
    ASSERT_EQ(freed.problems.size(), kept.problems.size());
    for (std::size_t i = 0; i < kept.problems.size(); ++i) {
        const bk_parser::Problem& a = freed.problems[i];
        const bk_parser::Problem& b = kept.problems[i];
        EXPECT_EQ(a.code, b.code);
        EXPECT_EQ(a.message, b.message);
        EXPECT_EQ(a.line, b.line);
        EXPECT_EQ(a.column, b.column);
        EXPECT_EQ(a.offset, b.offset);
        EXPECT_EQ(a.source_line, b.source_line);
        EXPECT_EQ(text.substr(a.source_line_offset, a.source_line.size()), a.source_line);
    }
}

} // namespace

TEST(large_commented_load, tells_a_problem_at_the_place_where_it_stands) {
    expect_same_problems(make_text("\n", "a 1 = 2 // wrong"));
}

TEST(large_commented_load, tells_words_that_a_comment_joins) {
    expect_same_problems(make_text("\n", "power 60.0// watts\nnext 1"));
}

TEST(large_commented_load, tells_stray_bytes_between_comments) {
    expect_same_problems(make_text("\n", "a \"\xFF\" // \xEF\xBB\xBF"));
}

TEST(large_commented_load, counts_lines_that_end_in_carriage_returns) {
    expect_same_problems(make_text("\r\n", "a 99999999999 // large"));
}

TEST(large_commented_load, tells_a_group_that_is_left_open) {
    expect_same_problems(make_text("\n", "g {"));
}
