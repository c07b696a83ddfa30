#include "document/path.h"
#include "parser/parser_file.h"
#include "tests/support/plain_text.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <sstream>
#include <vector>

// docs/paths.md shows paths with what they find, and malformed paths with their messages.

namespace {

std::string page() {
    std::ifstream file(std::string(BK_PARSER_SOURCE_DIR) + "/docs/paths.md", std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

std::string block_after(const std::string& text, const std::string& opening) {
    const std::size_t begin = text.find(opening) + opening.size();
    return text.substr(begin, text.find("```", begin) - begin);
}

/// The rows of the table below a heading, with two cells each.
std::vector<std::pair<std::string, std::string>> rows(const std::string& text, const std::string& head) {
    std::vector<std::pair<std::string, std::string>> found;
    std::istringstream lines(text.substr(text.find(head)));
    std::string line;
    std::getline(lines, line);
    std::getline(lines, line);
    while (std::getline(lines, line) && line.starts_with("| ")) {
        const std::size_t middle = line.find(" | ");
        found.emplace_back(line.substr(2, middle - 2), line.substr(middle + 3, line.size() - middle - 5));
    }
    return found;
}

std::string without_ticks(const std::string& cell) {
    return cell.starts_with('`') ? cell.substr(1, cell.size() - 2) : std::string();
}

} // namespace

TEST(path_page, every_example_finds_what_the_page_says) {
    const std::string text = page();
    ParserGroup root("root");
    ASSERT_TRUE(root.set_text(core(block_after(text, "```bkd\n")), default_parser_serial_version, nullptr));
    const auto examples = rows(text, "| path | finds |");
    EXPECT_GT(examples.size(), 20u);
    for (const auto& [path, finds] : examples) {
        std::string found;
        for (const ParserEntry& entry : bk_parser::find_all(root, without_ticks(path))) {
            found += (found.empty() ? "`" : ", `") + bk_parser::path_of(root, entry) + '`';
        }
        EXPECT_EQ(found.empty() ? "nothing" : found, finds) << path;
    }
}

TEST(path_page, every_malformed_path_has_the_message_that_the_page_says) {
    const auto examples = rows(page(), "| path | message |");
    EXPECT_GT(examples.size(), 10u);
    for (const auto& [path, message] : examples) {
        const auto error = bk_parser::path_error(without_ticks(path));
        ASSERT_TRUE(error) << path;
        EXPECT_EQ(error->message, message) << path;
    }
}

TEST(path_page, the_caret_stands_where_the_page_draws_it) {
    const std::string path = "light[power>]";
    EXPECT_EQ(bk_parser::to_text(*bk_parser::path_error(path), path),
              block_after(page().substr(page().find("## Malformed")), "```text\n"));
}
