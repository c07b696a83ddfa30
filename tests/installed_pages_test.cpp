#include "tests/support/scratch_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

std::string read(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

std::vector<fs::path> pages_below(const fs::path& folder) {
    std::vector<fs::path> pages;
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
        if (entry.path().extension() == ".md") {
            pages.push_back(entry.path());
        }
    }
    return pages;
}

/// The page without its blocks and without text in backticks.
std::string prose_of(const std::string& page) {
    std::istringstream lines(page);
    std::string prose;
    bool in_block = false;
    for (std::string line; std::getline(lines, line);) {
        const bool is_fence = line.find_first_not_of(' ') != std::string::npos &&
                              line.compare(line.find_first_not_of(' '), 3, "```") == 0;
        in_block = in_block != is_fence;
        prose += in_block || is_fence ? "" : line + "\n";
    }
    return prose;
}

/// The targets of the relative links of a page. The place in the target follows a '#'.
std::vector<std::string> relative_links(const std::string& text) {
    static const std::regex link(R"(\]\(\s*([^)\s]+)[^)]*\))");
    const std::string page = prose_of(text);
    std::vector<std::string> targets;
    for (std::sregex_iterator at(page.begin(), page.end(), link); at != std::sregex_iterator(); ++at) {
        const std::string target = (*at)[1];
        if (target.find("://") == std::string::npos && !target.starts_with("mailto:")) {
            targets.push_back(target);
        }
    }
    return targets;
}

/// The places of a page that links can name: its headings in lower case, with '-' for blanks and without
/// other signs.
std::set<std::string> places_of(const std::string& page) {
    std::set<std::string> places;
    std::istringstream lines(prose_of(page));
    for (std::string line; std::getline(lines, line);) {
        if (!line.starts_with('#')) {
            continue;
        }
        std::string place;
        for (const char sign : line.substr(line.find_first_not_of("# "))) {
            const auto byte = static_cast<unsigned char>(sign);
            if (std::isalnum(byte) != 0 || sign == '_' || sign == '-' || byte >= 0x80) {
                place += static_cast<char>(std::tolower(byte));
            } else if (sign == ' ') {
                place += '-';
            }
        }
        places.insert(place);
    }
    return places;
}

/// Whether the target of a link is a file and, if the link names a place, whether the file has such a
/// heading.
bool leads_somewhere(const fs::path& page, const std::string& link) {
    const std::size_t sign = std::min(link.find('#'), link.size());
    const fs::path target = sign == 0 ? page : page.parent_path() / link.substr(0, sign);
    return fs::exists(target) &&
           (sign == link.size() || places_of(read(target)).contains(link.substr(sign + 1)));
}

/// Checks every link of every page below the folder. Returns the number of links.
std::size_t follow_links(const fs::path& folder) {
    std::size_t count = 0;
    for (const fs::path& page : pages_below(folder)) {
        for (const std::string& target : relative_links(read(page))) {
            EXPECT_TRUE(leads_somewhere(page, target)) << page << " leads to " << target;
            ++count;
        }
    }
    return count;
}

} // namespace

TEST(installed_pages, links_are_found_in_a_page) {
    EXPECT_EQ(relative_links("[a](b.md) [c](d/e.md#f \"g\") [h](https://i/j) ![k](l.svg) (m.md)"),
              (std::vector<std::string>{"b.md", "d/e.md#f", "l.svg"}));
    EXPECT_EQ(relative_links("```\n[a](b.md)\n```\n[c](d.md)"), std::vector<std::string>{"d.md"});
}

#if defined(BK_PARSER_CMAKE)

TEST(installed_pages, every_relative_link_of_every_installed_page_leads_to_a_file) {
    const ScratchFolder folder;
    const std::string line =
        std::string("\"" BK_PARSER_CMAKE "\" --install \"" BK_PARSER_BUILD_DIR "\" --component documents ") +
        "--prefix \"" + folder.path() + "\" >\"" + folder.path("log") + "\"";
    ASSERT_EQ(std::system(line.c_str()), 0) << folder.read("log");
    EXPECT_GT(follow_links(folder.path()), 20u);
    std::size_t readmes = 0;
    for (const fs::path& page : pages_below(folder.path())) {
        readmes += page.filename() == "README.md" ? 1 : 0;
    }
    EXPECT_EQ(readmes, 2u); // the README of the project, and the list of the pages
}

#endif

TEST(installed_pages, every_relative_link_of_the_pages_in_the_tree_leads_to_a_file) {
    const fs::path root = BK_PARSER_SOURCE_DIR;
    EXPECT_GT(follow_links(root / "docs"), 10u);
    for (const char* name : {"README.md", "SECURITY.md", "CHANGELOG.md"}) {
        for (const std::string& target : relative_links(read(root / name))) {
            EXPECT_TRUE(leads_somewhere(root / name, target)) << name << " leads to " << target;
        }
    }
}
