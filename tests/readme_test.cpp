#include "tests/support/page_blocks.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <iomanip>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>

namespace {

const std::filesystem::path root = BK_PARSER_SOURCE_DIR;

/// The figure of a peer for the large scene in this column of the table, with one decimal.
std::string measured(const std::string& peer, std::string_view column) {
    std::istringstream lines(text_of_file(root / "docs/performance_figures.md"));
    std::string line;
    while (std::getline(lines, line) && !line.starts_with("## scene_1m")) {
    }
    std::size_t position = 0;
    while (std::getline(lines, line) && !line.starts_with("| " + peer + " |")) {
        if (line.starts_with("| | parse")) {
            const auto end = line.begin() + static_cast<std::ptrdiff_t>(line.find(column));
            position = static_cast<std::size_t>(std::count(line.begin(), end, '|'));
        }
    }
    std::istringstream cells(line);
    std::string cell;
    for (std::size_t i = 0; i <= position && std::getline(cells, cell, '|'); ++i) {
    }
    std::ostringstream text;
    text << std::fixed << std::setprecision(1) << std::stod(cell);
    return text.str();
}

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

TEST(readme, has_the_figures_of_the_last_measurement) {
    const std::string page = text_of_file(root / "README.md");
    const std::pair<const char*, const char*> figures[] = {{"bk_parser", "bk_parser reaches "},
                                                           {"pugixml", "pugixml "},
                                                           {"rapidjson", "RapidJSON "},
                                                           {"rapidjson_insitu", "RapidJSON in place "},
                                                           {"rapidxml", "rapidxml "},
                                                           {"pugixml_inplace+fc", "`std::from_chars` "},
                                                           {"simdjson, read-only", "read-only tree ("}};
    for (const auto& [peer, words] : figures) {
        const std::string told = words + measured(peer, " parse+walk ");
        EXPECT_NE(page.find(told), std::string::npos) << told;
    }
}

TEST(readme, has_the_range_of_a_parse_that_ends_with_the_destruction_of_the_tree) {
    std::string page = text_of_file(root / "README.md");
    std::replace(page.begin(), page.end(), '\n', ' ');
    const std::string rows = text_of_file(root / "docs/performance.md");
    const std::pair<std::size_t, const char*> peers[] = {{4, " times as fast as RapidJSON in place"},
                                                         {0, " times as fast as yyjson"}};
    for (const auto& [column, words] : peers) {
        // Rates have one digit before the point and two after it, so the texts sort as the numbers do.
        std::set<std::string> rates;
        const std::regex row("\n\\| (?:scene_10k|messages|catalog|coordinates) \\|(?: [0-9.]+ \\|){" +
                             std::to_string(column) + "} ([0-9.]+) \\|");
        for (std::sregex_iterator at(rows.begin(), rows.end(), row); at != std::sregex_iterator(); ++at) {
            rates.insert((*at)[1].str());
        }
        ASSERT_EQ(rates.size(), 4u) << words;
        const std::string range = *rates.begin() + " to " + *rates.rbegin() + words;
        EXPECT_NE(page.find(range), std::string::npos) << range;
    }
}

TEST(readme, counts_the_examples) {
    const std::filesystem::directory_iterator files(root / "examples");
    EXPECT_EQ(std::count_if(begin(files), end(files),
                            [](const auto& entry) { return entry.path().extension() == ".cpp"; }),
              15);
}

} // namespace
