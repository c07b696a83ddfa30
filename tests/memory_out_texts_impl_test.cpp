#include "tests/support/run_out.h"

#include "document/compare.h"
#include "document/document.h"
#include "document/format.h"
#include "document/merge.h"
#include "document/text_diff.h"

#include <gtest/gtest.h>

// Memory runs out while texts are formatted, merged and compared. std::bad_alloc is thrown, or the result is
// complete. Nothing leaks.

namespace {

using namespace bk_parser;

class MemoryOutOfTexts : public testing::TestWithParam<bool> {
protected:
    /// Lets request 1, 2, 3 ... of `operate` fail, until it makes fewer requests. `operate` returns whether
    /// its result is complete.
    static void expect_whole_or_thrown(const std::function<bool()>& operate) {
        constexpr std::size_t more_than_any_needs = 50000;
        ASSERT_TRUE(operate());
        for (std::size_t n = 1; n < more_than_any_needs; ++n) {
            const long live = FailingMemory::live();
            bool has_thrown = false;
            bool is_whole = false;
            bool has_failed = false;
            {
                const CountingLog log;
                FailingMemory::fail_at(n, GetParam());
                try {
                    is_whole = operate();
                } catch (const std::bad_alloc&) {
                    has_thrown = true;
                }
                has_failed = FailingMemory::disarm();
            }
            EXPECT_NE(is_whole, has_thrown) << "request " << n;
            EXPECT_TRUE(has_failed || is_whole) << "request " << n;
            EXPECT_EQ(FailingMemory::live(), live) << "request " << n << " left blocks behind";
            if (!has_failed || HasFailure()) {
                EXPECT_GT(n, 10u) << "little was asked for";
                return;
            }
        }
        FAIL();
    }

    static std::string document(const char* value) {
        return "#Brellwick_Serial_Version 1.2\n// about a\na { b 1, // one\n 2 c \"a text that is longer "
               "than eleven\" }\n"
               "#include \"a part of the document\"\nd " +
               std::string(value) + " f(1, 2)\n#key \"x\" last { g { h 1 } }\n";
    }
};

using memory_out_of_texts = MemoryOutOfTexts;

} // namespace

TEST_P(memory_out_of_texts, while_a_text_is_laid_out) {
    const std::string text = document("3");
    const FormatResult whole = format_text(text);
    ASSERT_TRUE(whole.ok()) << whole.reason;
    expect_whole_or_thrown([&] { return format_text(text).text == whole.text; });
    const std::string faulty = "a 1 %% }\nb";
    const std::string reason = format_text(faulty).reason;
    ASSERT_FALSE(reason.empty());
    expect_whole_or_thrown([&] { return format_text(faulty).reason == reason; });
}

TEST_P(memory_out_of_texts, while_texts_are_merged) {
    const std::string base = document("3");
    const std::string ours = document("4");
    const std::string theirs = document("5") + "new 1\n";
    const MergeResult whole = merge_texts(base, ours, theirs);
    ASSERT_TRUE(whole.ok()) << whole.reason;
    ASSERT_EQ(whole.conflicts, 1u);
    expect_whole_or_thrown([&] {
        const MergeResult result = merge_texts(base, ours, theirs);
        return result.ok() && result.text == whole.text && result.conflicts == 1;
    });
}

TEST_P(memory_out_of_texts, while_lines_are_compared) {
    const std::string before = document("3");
    const std::string after = document("4") + "new 1\n";
    const std::string whole = unified_diff(before, after, "before", "after");
    ASSERT_FALSE(whole.empty());
    expect_whole_or_thrown([&] { return unified_diff(before, after, "before", "after") == whole; });
}

TEST_P(memory_out_of_texts, while_trees_are_compared) {
    const LoadResult before = parse(scene() + "x 1 x 2 y { z 3 } ");
    const LoadResult after = parse("y { z 4 w 1 } x 2 x 1 " + scene());
    const ParserGroup& left = before.document.root();
    const ParserGroup& right = after.document.root();
    for (const bool ignores_order : {false, true}) {
        CompareOptions options;
        options.ignore_order = ignores_order;
        const std::size_t count = compare_trees(left, right, options).size();
        ASSERT_GT(count, 1u);
        expect_whole_or_thrown([&] { return compare_trees(left, right, options).size() == count; });
    }
}

INSTANTIATE_TEST_SUITE_P(one_request_or_all_from_there, memory_out_of_texts, testing::Bool());
