#include "tests/support/page_blocks.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>

namespace {

const std::filesystem::path root = BK_PARSER_SOURCE_DIR;

TEST(readme, is_shorter_than_150_lines) {
    const std::string page = text_of_file(root / "README.md");
    EXPECT_LT(std::count(page.begin(), page.end(), '\n'), 150);
}

TEST(readme, shows_a_whole_program_with_its_input_and_output) {
    const std::vector<PageBlock> blocks = blocks_of_page("README.md");
    for (const char* name : {"examples/lamp.bkd", "examples/load_ask_change_save.cpp",
                             "examples/expected/load_ask_change_save.txt"}) {
        const auto block = std::find_if(blocks.begin(), blocks.end(), [name](const PageBlock& candidate) {
            return candidate.mark == name;
        });
        ASSERT_NE(block, blocks.end()) << name;
        EXPECT_EQ(block->text, text_of_file(root / name));
    }
}

TEST(readme, tells_what_the_program_leaves_in_the_document) {
    EXPECT_NE(text_of_file(root / "README.md").find("`lamp.bkd` says `power 80.0`"), std::string::npos);
    EXPECT_NE(text_of_file(root / "examples/expected/load_ask_change_save.bkd").find("\npower 80.0\n"),
              std::string::npos);
}

TEST(readme, counts_the_examples) {
    const std::filesystem::directory_iterator files(root / "examples");
    EXPECT_EQ(std::count_if(begin(files), end(files),
                            [](const auto& entry) { return entry.path().extension() == ".cpp"; }),
              15);
}

} // namespace
