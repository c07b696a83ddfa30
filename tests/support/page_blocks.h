#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

/// A fenced block of a page: "```<kind> <rest of the mark>", its lines, and "```".
struct PageBlock {
    std::string kind;
    std::string mark; // the text after the kind
    std::string text; // each line with its line feed
    unsigned int line = 0;
};

inline std::string text_of_file(const std::filesystem::path& path) {
    std::ifstream stream(path, std::ios::binary);
    std::string text{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    std::erase(text, '\r');
    return text;
}

/// The blocks of a page in their order. The fence of a block in a list is indented; its indentation is removed from the lines.
inline std::vector<PageBlock> blocks_of(const std::string& page) {
    constexpr std::string_view fence = "```";
    std::vector<PageBlock> blocks;
    std::istringstream lines(page);
    std::string line;
    std::size_t indent = 0;
    bool is_open = false;
    for (unsigned int number = 1; std::getline(lines, line); ++number) {
        const std::size_t first = line.find_first_not_of(' ');
        const bool is_fence = first != std::string::npos && line.compare(first, fence.size(), fence) == 0;
        if (is_fence && !is_open) {
            const std::string mark = line.substr(first + fence.size());
            const std::size_t blank = mark.find(' ');
            blocks.push_back({mark.substr(0, blank), blank == std::string::npos ? "" : mark.substr(blank + 1),
                              "", number});
            indent = first;
            is_open = true;
        } else if (is_fence && line.size() == first + fence.size()) {
            is_open = false;
        } else if (is_open) {
            blocks.back().text += (line.size() > indent ? line.substr(indent) : std::string()) + '\n';
        }
    }
    return blocks;
}

inline std::vector<PageBlock> blocks_of_page(const std::string& name) {
    return blocks_of(text_of_file(std::filesystem::path(BK_PARSER_SOURCE_DIR) / name));
}
