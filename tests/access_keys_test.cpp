#include "document/access.h"
#include "parser/parser_file.h"
#include "tests/support/described.h"
#include "tests/support/plain_text.h"
#include "tests/support/recording_log.h"

#include <gtest/gtest.h>

#include <vector>

// When the last step of a path has a key, every function that reads or writes values takes the values after
// the key.

namespace {

using bk_parser::add;
using bk_parser::get;
using bk_parser::set;

class access_keys : public testing::Test {
protected:
    void fill(std::string_view text) { root_.set_text(core(text), default_parser_serial_version, nullptr); }
    std::string text() const { return described(root_); }

    ParserGroup root_{"root"};
    RecordingLog log_;
};

} // namespace

TEST_F(access_keys, the_value_behind_the_key_is_read) {
    fill("b \"k\" 1 2 b \"l\" \"m\" ");
    EXPECT_EQ(get<int>(root_, "b[\"k\"]"), 1);
    EXPECT_EQ(get<std::string>(root_, "b[\"l\"]"), "m");
    EXPECT_EQ(get<std::vector<int>>(root_, "b[\"k\"]"), (std::vector<int>{1, 2}));
    EXPECT_EQ(get<std::string>(root_, "b[\"k\"]@0"), "k");
    EXPECT_EQ(get<int>(root_, "b[\"k\"]@2"), 2);
    EXPECT_EQ(get<int>(root_, "*[\"k\"][0]"), 1);
    EXPECT_EQ(get<int>(root_, bk_parser::Path("b[\"k\"]")), 1);
    EXPECT_EQ(get<std::string>(root_, "b[@0=\"k\"]"), "k") << "a condition is no key";
    EXPECT_EQ(bk_parser::get_or(root_, "b[\"n\"]", 5), 5);
}

TEST_F(access_keys, the_value_behind_the_key_is_set_and_the_key_stays) {
    fill("b \"k\" 1 ");
    EXPECT_TRUE(set(root_, "b[\"k\"]", 7));
    EXPECT_EQ(text(), " b \"k\" 7");
    EXPECT_TRUE(set(root_, "b[\"k\"]", 7)) << "and once more";
    EXPECT_TRUE(set(root_, "b[\"k\"]", std::vector<int>{8, 9}));
    EXPECT_EQ(text(), " b \"k\" 8 9");
    EXPECT_TRUE(set(root_, "b[\"k\"]@0", "l"));
    EXPECT_EQ(text(), " b \"l\" 8 9");
    fill("c \"k\" d \"k\" { } ");
    EXPECT_TRUE(set(root_, "c[\"k\"]", 1));
    EXPECT_FALSE(set(root_, "d[\"k\"]", 1)) << "a group stands there";
    EXPECT_EQ(text(), " b \"l\" 8 9 c \"k\" 1 d \"k\" { }");
}

TEST_F(access_keys, set_and_add_make_the_same_entry_where_there_is_none) {
    struct Row {
        const char* path;
        const char* made; // empty when both functions refuse the path
    };
    for (const Row& row : {Row{"c", " c 8"},
                           {"c@0", " c 8"},
                           {"c@1", ""},
                           {"c[0]", " c 8"},
                           {"c[1]", ""},
                           {"c<t>", " c<t> 8"},
                           {"c[\"k\"]", " c \"k\" 8"},
                           {"c[\"k\"][0]", " c \"k\" 8"},
                           {"c[\"k\"]@0", ""},
                           {"c[\"k\"]@1", " c \"k\" 8"},
                           {"c[\"k\"]@2", ""},
                           {"c[\"k\"][\"l\"]", ""},
                           {"g/c[\"k\"]", " g { c \"k\" 8 }"},
                           {"g[\"k\"]/c", " g \"k\" { c 8 }"},
                           {"c[x=1]", ""},
                           {"*", ""}}) {
        ParserGroup by_set("root");
        ParserGroup by_add("root");
        const bool is_made = *row.made != '\0';
        EXPECT_EQ(set(by_set, row.path, 8), is_made) << row.path;
        EXPECT_EQ(add(by_add, row.path, 8) != nullptr, is_made) << row.path;
        EXPECT_EQ(described(by_set), row.made) << row.path;
        EXPECT_EQ(described(by_add), row.made) << row.path;
        EXPECT_EQ(get<int>(by_set, row.path), is_made ? std::optional(8) : std::nullopt) << row.path;
    }
    EXPECT_TRUE(log_.messages.empty());
}
