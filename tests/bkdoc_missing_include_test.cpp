#include "tests/support/bkdoc_run.h"

#include <gtest/gtest.h>

// A document with a missing include is read without it. An option of every verb skips all includes.

namespace {

class bkdoc_missing_include : public testing::Test {
protected:
    BkdocRun run(const std::vector<std::string>& arguments) {
        return run_bkdoc_in(folder_.path(), arguments);
    }

    ScratchFolder folder_;
    std::string file_ = folder_.write("a.bkd", "a 1\n#include \"gone.bkd\"\nb 2\n");
    const std::string told_ = "a.bkd:2:1: error: 'gone.bkd' not found; tried gone.bkd; -I adds a folder "
                              "[include-not-found]\n#include \"gone.bkd\"\n^~~~~~~~~~~~~~~~~~~\n";
};

TEST_F(bkdoc_missing_include, stops_no_verb_that_looks_or_finds) {
    const std::vector<std::pair<std::vector<std::string>, std::string>> runs{
        {{"tree", "a.bkd"}, "\xE2\x94\x94\xE2\x94\x80\xE2\x94\x80 b  int  2\n"},
        {{"info", "a.bkd"}, "\nentries       2  (2 ordinary)\n"},
        {{"stats", "a.bkd"}, "2 entries, 2 values\n"},
        {{"deps", "a.bkd"}, "gone.bkd  line 2  not found; tried gone.bkd\n"},
        {{"get", "b", "a.bkd"}, "a.bkd:3:1: b = 2\n"},
        {{"grep", "2", "a.bkd"}, "a.bkd:3:1: b@0 = 2\n"},
    };
    for (const auto& [arguments, shown] : runs) {
        const BkdocRun run = this->run(arguments);
        EXPECT_NE(run.out.find(shown), std::string::npos) << arguments[0] << ": " << run.out;
        EXPECT_LT(run.code, 2) << arguments[0];
    }
    EXPECT_EQ(run({"check", "a.bkd"}).out, told_ + "1 error\n");
    EXPECT_EQ(run({"tree", "a.bkd"}).err, told_);
}

TEST_F(bkdoc_missing_include, is_no_problem_where_includes_are_left_out) {
    folder_.write("b.bkd", "a 1\n#include \"gone.bkd\"\nb 3\n");
    const std::vector<std::vector<std::string>> runs{{"check", "a.bkd"},
                                                     {"tree", "a.bkd"},
                                                     {"cat", "a.bkd"},
                                                     {"info", "a.bkd"},
                                                     {"stats", "a.bkd"},
                                                     {"deps", "a.bkd"},
                                                     {"get", "b", "a.bkd"},
                                                     {"grep", "2", "a.bkd"},
                                                     {"set", "b", "=3", "a.bkd"},
                                                     {"add", "c", "3", "a.bkd"},
                                                     {"rm", "b", "a.bkd"},
                                                     {"mv", "b", "c", "a.bkd"},
                                                     {"rename", "b", "c", "a.bkd"},
                                                     {"diff", "a.bkd", "a.bkd"},
                                                     {"same", "a.bkd", "a.bkd"},
                                                     {"textconv", "a.bkd"},
                                                     {"convert", "--to", "json", "a.bkd", "-"}};
    for (const std::vector<std::string>& arguments : runs) {
        std::vector<std::string> alone = arguments;
        alone.emplace_back("--no-includes");
        const BkdocRun run = this->run(alone);
        EXPECT_EQ(run.code, 0) << arguments[0] << ": " << run.err;
        EXPECT_EQ(run.err.find("gone.bkd"), std::string::npos) << arguments[0] << ": " << run.err;
        EXPECT_EQ((run.out + run.err).find("not found"), std::string::npos) << arguments[0];
    }
    EXPECT_EQ(run({"diff", "--no-includes", "a.bkd", "b.bkd"}).out, "b.bkd:3 b 2 -> 3\n");
}

} // namespace
