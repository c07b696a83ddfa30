#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>
#include <set>
#include <string>

// docs/guarantees.md names tests for each promise.

namespace {

const std::filesystem::path root = BK_PARSER_SOURCE_DIR;

std::string read(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

/// Every "suite.name" in the text, where the two groups of the pattern match the suite and the name.
std::set<std::string> names_in(const std::string& text, const std::regex& pattern) {
    std::set<std::string> names;
    for (std::sregex_iterator at(text.begin(), text.end(), pattern); at != std::sregex_iterator(); ++at) {
        names.insert((*at)[1].str() + "." + (*at)[2].str());
    }
    return names;
}

std::set<std::string> tests_there_are() {
    const std::regex definition("\\bTEST(?:_F|_P)?\\(\\s*(\\w+),\\s*(\\w+)\\s*\\)");
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(root / "tests")) {
        if (entry.path().extension() == ".cpp") {
            names.merge(names_in(read(entry.path()), definition));
        }
    }
    return names;
}

} // namespace

TEST(guarantees_page, every_test_that_it_names_is_there) {
    const std::set<std::string> tests = tests_there_are();
    const std::set<std::string> named =
        names_in(read(root / "docs/guarantees.md"), std::regex("`([a-z]\\w*)\\.(\\w*_\\w*)`"));
    EXPECT_GT(named.size(), 60u);
    for (const std::string& name : named) {
        EXPECT_TRUE(tests.contains(name)) << name;
    }
}

TEST(guarantees_page, every_limit_is_tried_by_a_test) {
    const std::string header = read(root / "parser/parser_limits.h");
    const std::string tests = read(root / "tests/limits_test.cpp");
    const std::regex field("\\n    (?:unsigned int|core_uint64) (\\w+) = ");
    int fields = 0;
    for (std::sregex_iterator at(header.begin(), header.end(), field); at != std::sregex_iterator(); ++at) {
        ++fields;
        EXPECT_NE(tests.find("limits." + (*at)[1].str()), std::string::npos) << (*at)[1];
    }
    EXPECT_GE(fields, 8);
}
