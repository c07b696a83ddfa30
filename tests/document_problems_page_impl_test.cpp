#include "document/document.h"
#include "document/problems/list/problem_codes_impl.h"
#include "tests/support/scratch_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace {

using Files = std::vector<std::pair<std::string, std::string>>;

struct Section {
    std::string title;
    std::string text;
    Files example;
    Files correction;
};

std::vector<std::string> page_lines() {
    std::ifstream stream(std::string(BK_PARSER_SOURCE_DIR) + "/docs/problems.md", std::ios::binary);
    std::vector<std::string> lines;
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return lines;
}

/// Replaces "‹EF BB BF›" by three bytes.
std::string with_bytes(const std::string& text) {
    const std::string open = "\xE2\x80\xB9";
    const std::string close = "\xE2\x80\xBA";
    std::string out;
    std::size_t at = 0;
    for (std::size_t begin = text.find(open); begin != std::string::npos; begin = text.find(open, at)) {
        out += text.substr(at, begin - at);
        const std::size_t end = text.find(close, begin);
        for (std::size_t i = begin + open.size(); i < end; i += 3) {
            out += static_cast<char>(std::stoi(text.substr(i, 2), nullptr, 16));
        }
        at = end + close.size();
    }
    return out + text.substr(at);
}

/// The sections of problems. Their first line gives a severity.
std::vector<Section> read_page() {
    std::vector<Section> sections;
    Files* files = nullptr;
    bool in_block = false;
    for (const std::string& line : page_lines()) {
        if (in_block && line == "```") {
            in_block = false;
        } else if (in_block) {
            files->back().second += with_bytes(line) + "\n";
        } else if (line.starts_with("## ")) {
            sections.push_back({line.substr(3), {}, {}, {}});
        } else if (line == "Example:") {
            files = &sections.back().example;
        } else if (line == "Corrected:") {
            files = &sections.back().correction;
        } else if (line.starts_with("```bkd ")) {
            files->push_back({line.substr(7), {}});
            in_block = true;
        } else if (!sections.empty()) {
            sections.back().text += line + "\n";
        }
    }
    std::erase_if(sections, [](const Section& section) { return section.title == "False alarms"; });
    return sections;
}

std::vector<std::string> codes_of(const Files& files) {
    const ScratchFolder folder;
    for (const auto& [name, text] : files) {
        folder.write(name, text);
    }
    std::vector<std::string> codes;
    for (const bk_parser::Problem& problem : bk_parser::load(folder.path("main.bkd")).problems) {
        codes.push_back(problem.code);
    }
    return codes;
}

TEST(document_problems_page, has_a_section_for_each_code_in_the_order_of_the_table) {
    std::vector<std::string> titles;
    for (const Section& section : read_page()) {
        titles.push_back(section.title);
    }
    std::vector<std::string> codes;
    for (const bk_parser::ProblemCode& row : bk_parser::problem_codes) {
        codes.emplace_back(row.code);
    }
    EXPECT_EQ(titles, codes);
}

TEST(document_problems_page, tells_the_severity_of_each_code) {
    for (const Section& section : read_page()) {
        const bool is_error = bk_parser::severity_of(section.title) == bk_parser::Severity::error;
        EXPECT_TRUE(section.text.starts_with(is_error ? "\nError. " : "\nWarning. ")) << section.title;
    }
}

TEST(document_problems_page, has_examples_that_give_the_problem_and_nothing_else) {
    for (const Section& section : read_page()) {
        if (section.example.empty()) {
            EXPECT_NE(section.text.find("No example: it "), std::string::npos) << section.title;
            continue;
        }
        const std::vector<std::string> codes = codes_of(section.example);
        EXPECT_FALSE(codes.empty()) << section.title;
        for (const std::string& code : codes) {
            EXPECT_EQ(code, section.title);
        }
    }
}

TEST(document_problems_page, has_corrections_that_give_no_problem) {
    for (const Section& section : read_page()) {
        EXPECT_EQ(section.correction.empty(), section.example.empty()) << section.title;
        EXPECT_EQ(section.correction.empty() ? std::vector<std::string>() : codes_of(section.correction),
                  std::vector<std::string>())
            << section.title;
    }
}

TEST(document_problems_table, has_each_code_once_with_a_summary) {
    std::vector<std::string_view> codes;
    for (const bk_parser::ProblemCode& row : bk_parser::problem_codes) {
        codes.push_back(row.code);
        EXPECT_FALSE(row.summary.empty()) << row.code;
        EXPECT_EQ(row.code.find_first_not_of("abcdefghijklmnopqrstuvwxyz-8"), std::string_view::npos)
            << row.code;
    }
    std::sort(codes.begin(), codes.end());
    EXPECT_EQ(std::adjacent_find(codes.begin(), codes.end()), codes.end());
}

} // namespace
