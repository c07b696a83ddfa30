#include "document/document.h"
#include "tests/support/heap_meter.h"
#include "tests/support/sanitizer.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

// The cost of the problems of a hostile document. Composing a message allocates at least one block of the
// heap.

#if !defined(_WIN32) // on Windows, the library has a heap of its own

namespace {

std::size_t blocks_of(std::string_view begin, std::string_view piece, std::size_t count) {
    std::string text(begin);
    for (std::size_t i = 0; i < count; ++i) {
        text += piece;
    }
    HeapMeter::start();
    const bk_parser::LoadResult result = bk_parser::parse(text);
    EXPECT_EQ(result.problems.size(), 10001u);
    EXPECT_EQ(result.problems.back().code, "more-problems");
    return HeapMeter::taken();
}

/// Expects fewer than 2,000 more blocks for 20,000 more problems, so that their messages are not composed.
void expect_nothing_is_composed(std::string_view begin, std::string_view piece) {
    EXPECT_LT(blocks_of(begin, piece, 31000), blocks_of(begin, piece, 11000) + 2000) << piece;
}

} // namespace

TEST(document_problem_cost, a_message_of_a_problem_that_is_too_many_is_not_composed) {
#if defined(BK_PARSER_SANITIZED_MEMORY)
    GTEST_SKIP() << "there each value of a tree takes a block of the heap, too";
#endif
    expect_nothing_is_composed("", "]]]]]]]]]]]]]]]]]]]]]]]]]]]]]]]] ");
    expect_nothing_is_composed("a ", "1234567890; ");
    expect_nothing_is_composed("a ", "0x0123456789ABCDEF ");
    expect_nothing_is_composed("#Brellwick_Serial_Version 1.2\na ", "\"a long text with \\q in it\" ");
    expect_nothing_is_composed("", "#INCLUDE \"a_file_of_a_long_name.bkd\"\n");
    expect_nothing_is_composed("", "a 1// a comment that joins two lines\n");
    expect_nothing_is_composed("", "lamp[3] 1 2\n");
    expect_nothing_is_composed("", "function_of_a_long_name(1, 2\n");
    expect_nothing_is_composed("", "'a text in single quotes that is long'\n");
}

#endif
