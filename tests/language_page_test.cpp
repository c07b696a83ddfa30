#include "tests/support/page_blocks.h"
#include "tests/support/told_outcome.h"

#include <gtest/gtest.h>

// Parses every example of docs/language.md, and compares the outcome with the one that the page shows after the example.

TEST(language_page, every_example_has_the_outcome_that_the_page_shows) {
    const std::vector<PageBlock> blocks = blocks_of_page("docs/language.md");
    unsigned int examples = 0;
    for (std::size_t i = 0; i + 1 < blocks.size(); ++i) {
        if (blocks[i].kind == "bkd") {
            EXPECT_EQ(blocks[i + 1].kind, "outcome") << "line " << blocks[i].line;
            EXPECT_EQ(outcome_of(blocks[i].text), blocks[i + 1].text) << "line " << blocks[i].line;
            ++examples;
        }
    }
    EXPECT_GT(examples, 40u);
}
