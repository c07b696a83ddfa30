#include "tests/support/page_blocks.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

// Every block of every page is checked by something, or marked as text. A mark says how:
//   ```text, ```<language> text    nothing to check
//   ```cpp <file>                  lines of a program that is compiled and run (examples/, docs/programs/)
//   ```output <file>               lines of what such a program prints
//   ```<language> <file>           lines of that file
//   ```console                     commands and what they print, run by bkdoc_pages_test
// A page whose blocks have kinds of their own says which test reads them:
//   <!-- checked by tests/formats_page_test.cpp: document bytes -->

namespace {

namespace fs = std::filesystem;
const fs::path root = BK_PARSER_SOURCE_DIR;

std::vector<std::string> pages() {
    std::vector<std::string> names{"README.md", "SECURITY.md", "CHANGELOG.md"};
    for (const auto& entry : fs::directory_iterator(root / "docs")) {
        if (entry.path().extension() == ".md") {
            names.push_back("docs/" + entry.path().filename().string());
        }
    }
    std::sort(names.begin(), names.end());
    return names;
}

/// The kinds of blocks of a page that its own test checks. That test must exist and name the page.
std::set<std::string> own_kinds(const std::string& name, const std::string& page) {
    constexpr std::string_view opening = "<!-- checked by ";
    const std::size_t begin = page.find(opening);
    if (begin == std::string::npos) {
        return {};
    }
    const std::size_t colon = page.find(": ", begin);
    const std::string test = page.substr(begin + opening.size(), colon - begin - opening.size());
    EXPECT_NE(text_of_file(root / test).find(fs::path(name).filename().string()), std::string::npos)
        << test << " does not read " << name;
    std::istringstream words(page.substr(colon + 2, page.find("-->", colon) - colon - 2));
    return {std::istream_iterator<std::string>(words), {}};
}

std::vector<std::string> lines_of(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line.substr(0, line.find_last_not_of(' ') + 1));
    }
    return lines;
}

/// Removes the blanks with which all lines begin.
std::vector<std::string> without_indent(std::vector<std::string> lines) {
    std::size_t indent = std::string::npos;
    for (const std::string& line : lines) {
        indent = line.empty() ? indent : std::min(indent, line.find_first_not_of(' '));
    }
    for (std::string& line : lines) {
        line.erase(0, indent);
    }
    return lines;
}

/// Whether the file has the lines of the block one after another. Ignores their indentation.
bool is_part(const std::string& block, const std::string& file) {
    const std::vector<std::string> lines = lines_of(block);
    const std::vector<std::string> all = lines_of(file);
    for (std::size_t i = 0; i + lines.size() <= all.size(); ++i) {
        const auto begin = all.begin() + static_cast<std::ptrdiff_t>(i);
        if (without_indent({begin, begin + static_cast<std::ptrdiff_t>(lines.size())}) == lines) {
            return !lines.empty();
        }
    }
    return false;
}

/// Empty if the mark of a block says how it is checked, and this test finds nothing against it.
std::string complaint(const PageBlock& block, const std::set<std::string>& kinds) {
    if (block.kind == "text" || block.mark == "text" || block.kind == "console" ||
        kinds.contains(block.kind)) {
        return "";
    }
    if (block.mark.empty()) {
        return "has no mark that says how it is checked";
    }
    if (!fs::is_regular_file(root / block.mark)) {
        return "names no file: " + block.mark;
    }
    const bool is_run = block.mark.starts_with("examples/") || block.mark.starts_with("docs/programs/");
    if ((block.kind == "cpp" || block.kind == "output") && !is_run) {
        return "names no program that is run: " + block.mark;
    }
    return is_part(block.text, text_of_file(root / block.mark)) ? "" : "is no part of " + block.mark;
}

} // namespace

TEST(pages, every_block_is_checked_or_marked_as_text) {
    std::size_t count = 0;
    for (const std::string& name : pages()) {
        const std::string page = text_of_file(root / name);
        const std::set<std::string> kinds = own_kinds(name, page);
        for (const PageBlock& block : blocks_of(page)) {
            EXPECT_EQ(complaint(block, kinds), "") << name << ":" << block.line;
            ++count;
        }
    }
    EXPECT_GT(count, 150u);
}

TEST(pages, a_block_without_a_mark_is_told) {
    EXPECT_NE(complaint(blocks_of("```\na\n```\n").at(0), {}), "");
    EXPECT_NE(complaint(blocks_of("```cpp\nint a;\n```\n").at(0), {}), "");
    EXPECT_NE(complaint(blocks_of("```cpp examples/no_such_program.cpp\nint a;\n```\n").at(0), {}), "");
    EXPECT_NE(complaint(blocks_of("```cpp examples/walk_a_tree.cpp\nint a;\n```\n").at(0), {}), "");
    EXPECT_EQ(complaint(blocks_of("```cpp examples/walk_a_tree.cpp\nint main() {\n```\n").at(0), {}), "");
    EXPECT_EQ(complaint(blocks_of("  ```json text\n  {}\n  ```\n").at(0), {}), "");
}

TEST(pages, every_program_of_theirs_is_shown) {
    std::string all;
    for (const std::string& name : pages()) {
        all += text_of_file(root / name);
    }
    for (const auto& entry : fs::directory_iterator(root / "docs/programs")) {
        if (entry.path().extension() == ".cpp") {
            EXPECT_NE(all.find("```cpp docs/programs/" + entry.path().filename().string()), std::string::npos)
                << entry.path();
        }
    }
}

TEST(pages, every_chart_has_colours_for_dark_pages) {
    std::size_t count = 0;
    for (const auto& entry : fs::directory_iterator(root / "docs")) {
        if (entry.path().filename().string().starts_with("performance_") &&
            entry.path().extension() == ".svg") {
            const std::string picture = text_of_file(entry.path());
            EXPECT_NE(picture.find("(prefers-color-scheme: dark)"), std::string::npos)
                << entry.path() << ": run bench/peers/theme_pictures";
            EXPECT_NE(picture.find("class=\"background\""), std::string::npos) << entry.path();
            ++count;
        }
    }
    EXPECT_GT(count, 0u);
}
