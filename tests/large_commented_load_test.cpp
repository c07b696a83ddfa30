#include "document/document.h"
#include "tests/support/scratch_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace {

/// So large that the pieces between the comments take many blocks.
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

/// Each problem has the line and column of its offset, and its line is that of the text. No problem has a character that is not ASCII
/// before it in its line.
void expect_problems_in_place(const std::string& text) {
    const ScratchFolder folder;
    const bk_parser::LoadResult loaded = bk_parser::load(folder.write("large.bkd", text));
    ASSERT_FALSE(loaded.problems.empty());
    for (const bk_parser::Problem& problem : loaded.problems) {
        const std::string before = text.substr(0, problem.offset);
        const std::size_t line_begin = before.find_last_of('\n') + 1;
        EXPECT_EQ(problem.line, 1 + std::count(before.begin(), before.end(), '\n'));
        EXPECT_EQ(problem.column, 1 + before.size() - line_begin);
        EXPECT_EQ(problem.source_line_offset, line_begin);
        EXPECT_EQ(problem.source_line,
                  text.substr(line_begin, text.find_first_of("\r\n", line_begin) - line_begin));
    }
}

} // namespace

TEST(large_commented_load, tells_a_problem_at_the_place_where_it_stands) {
    expect_problems_in_place(make_text("\n", "a 1 = 2 // wrong"));
}

TEST(large_commented_load, tells_words_that_a_comment_joins) {
    expect_problems_in_place(make_text("\n", "power 60.0// watts\nnext 1"));
}

TEST(large_commented_load, tells_stray_bytes_between_comments) {
    expect_problems_in_place(make_text("\n", "a \"\xFF\" // \xEF\xBB\xBF"));
}

TEST(large_commented_load, counts_lines_that_end_in_carriage_returns) {
    expect_problems_in_place(make_text("\r\n", "a 99999999999 // large"));
}

TEST(large_commented_load, tells_a_group_that_is_left_open) {
    expect_problems_in_place(make_text("\n", "g {"));
}
