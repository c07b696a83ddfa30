#include "tests/support/scratch_folder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>
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

/// Where the links of a page lead that are relative: the target alone, without a place in it.
std::vector<std::string> relative_links(const std::string& page) {
    static const std::regex link(R"(\]\(\s*([^)#\s]+)[^)]*\))");
    std::vector<std::string> targets;
    for (std::sregex_iterator at(page.begin(), page.end(), link); at != std::sregex_iterator(); ++at) {
        const std::string target = (*at)[1];
        if (target.find("://") == std::string::npos && !target.starts_with("mailto:")) {
            targets.push_back(target);
        }
    }
    return targets;
}

/// Follows every link of every page below the folder, and gives how many there are.
std::size_t follow_links(const fs::path& folder) {
    std::size_t count = 0;
    for (const fs::path& page : pages_below(folder)) {
        for (const std::string& target : relative_links(read(page))) {
            EXPECT_TRUE(fs::exists(page.parent_path() / target)) << page << " leads to " << target;
            ++count;
        }
    }
    return count;
}

} // namespace

TEST(installed_pages, links_are_found_in_a_page) {
    EXPECT_EQ(relative_links("[a](b.md) [c](d/e.md#f \"g\") [h](https://i/j) ![k](l.svg) (m.md)"),
              (std::vector<std::string>{"b.md", "d/e.md", "l.svg"}));
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
    EXPECT_EQ(readmes, 1u);
}

#endif

TEST(installed_pages, every_relative_link_of_the_pages_in_the_tree_leads_to_a_file) {
    const fs::path root = BK_PARSER_SOURCE_DIR;
    EXPECT_GT(follow_links(root / "docs"), 10u);
    for (const char* name : {"README.md", "SECURITY.md", "CHANGELOG.md"}) {
        for (const std::string& target : relative_links(read(root / name))) {
            EXPECT_TRUE(fs::exists(root / target)) << name << " leads to " << target;
        }
    }
}
