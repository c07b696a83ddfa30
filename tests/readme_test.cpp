#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

namespace {

std::string file_text(const std::string& name) {
    std::ifstream stream(std::string(BK_PARSER_SOURCE_DIR) + "/" + name);
    EXPECT_TRUE(stream.is_open()) << name;
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

/// What stands between the first line "```cpp" and the line that ends the block.
std::string first_program_of(std::string_view page) {
    const std::string_view opening = "\n```cpp\n";
    const std::size_t start = page.find(opening);
    if (start == std::string_view::npos) {
        return {};
    }
    page.remove_prefix(start + opening.size());
    return std::string(page.substr(0, page.find("```\n")));
}

TEST(readme, the_first_program_is_the_example_that_is_compiled_and_run) {
    EXPECT_EQ(first_program_of(file_text("README.md")), file_text("examples/read_edit_write.cpp"));
}

} // namespace
