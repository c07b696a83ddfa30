#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

namespace {

std::string file_text(const std::string& name) {
    std::ifstream stream(std::string(BK_PARSER_SOURCE_DIR) + "/" + name);
    EXPECT_TRUE(stream.is_open()) << name;
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

/// What stands between each line "```cpp" and the line that ends the block.
std::vector<std::string> programs_of(std::string_view page) {
    constexpr std::string_view opening = "\n```cpp\n";
    std::vector<std::string> programs;
    for (std::size_t start = page.find(opening); start != std::string_view::npos;
         start = page.find(opening)) {
        page.remove_prefix(start + opening.size());
        programs.emplace_back(page.substr(0, page.find("```\n")));
    }
    return programs;
}

TEST(readme, its_programs_are_examples_that_are_compiled_and_run) {
    const std::vector<std::string> programs = programs_of(file_text("README.md"));
    ASSERT_EQ(programs.size(), 2u);
    EXPECT_EQ(programs[0], file_text("examples/load_ask_change_save.cpp"));
    EXPECT_EQ(programs[1], file_text("examples/read_edit_write.cpp"));
}

} // namespace
