#include "tests/support/bkdoc_run.h"

#include <gtest/gtest.h>

namespace {

class BkdocSelection : public testing::Test {
protected:
    const ScratchFolder folder;
    const std::string first = folder.write("a.bkd", "light { power 60 }\ncamera 1\nlight { power 90 }\n");
    const std::string second = folder.write("b.bkd", "light { power 30 }\n");
};

using bkdoc_selection = BkdocSelection;

TEST_F(bkdoc_selection, is_drawn_of_several_documents) {
    const BkdocRun run = run_bkdoc({"tree", "--path", "light/power", first, second});
    EXPECT_EQ(run.code, 0);
    const std::string version = "  version 1.0, ";
    EXPECT_EQ(run.out, first + version +
                           "2 entries\n\xE2\x94\x9C\xE2\x94\x80\xE2\x94\x80 power  int  60\n"
                           "\xE2\x94\x94\xE2\x94\x80\xE2\x94\x80 power  int  90\n\n" +
                           second + version +
                           "1 entry\n\xE2\x94\x94\xE2\x94\x80\xE2\x94\x80 power  int  30\n");
}

TEST_F(bkdoc_selection, is_written_as_one_document) {
    const BkdocRun run = run_bkdoc({"cat", "--compact", "--path", "light", first, second});
    EXPECT_EQ(run.code, 0);
    EXPECT_EQ(
        run.out,
        "#Brellwick_Serial_Version 1.2\n light { power 60 } light { power 90 }\n\n light { power 30 }\n");
    EXPECT_EQ(run_bkdoc({"check", "-"}, run.out).out, "");
}

TEST_F(bkdoc_selection, is_counted) {
    const BkdocRun run = run_bkdoc({"info", "--path", "camera", first});
    EXPECT_EQ(run.code, 0);
    EXPECT_NE(run.out.find("\nentries       1  (1 ordinary)\n"), std::string::npos) << run.out;
}

TEST_F(bkdoc_selection, may_be_of_the_documents_of_folders_and_patterns) {
    folder.write("notes.txt", "no document");
    for (const std::string& operand : {folder.path(), folder.path() + "/*.bkd"}) {
        EXPECT_EQ(run_bkdoc({"tree", "--path", "light/power", operand}).out,
                  run_bkdoc({"tree", "--path", "light/power", first, second}).out);
        EXPECT_EQ(run_bkdoc({"cat", operand}).out, run_bkdoc({"cat", first, second}).out);
        EXPECT_EQ(run_bkdoc({"info", operand}).out, run_bkdoc({"info", first, second}).out);
        const BkdocRun stats = run_bkdoc({"stats", operand});
        EXPECT_EQ(stats.code, 0);
        EXPECT_TRUE(stats.out.starts_with("2 documents: ")) << stats.out;
    }
    const BkdocRun none = run_bkdoc({"info", folder.path() + "/*.none"});
    EXPECT_EQ(none.code, 2);
    EXPECT_EQ(none.err, "bkdoc: " + folder.path() + "/*.none: no file matches this pattern\n");
}

TEST_F(bkdoc_selection, that_finds_nothing_is_told) {
    const BkdocRun run = run_bkdoc({"tree", "--path", "camera", first, second});
    EXPECT_EQ(run.code, 1);
    EXPECT_EQ(run.err, "bkdoc: " + second + ": nothing matches camera\n");
    EXPECT_TRUE(run.out.starts_with(first + "  version ")) << run.out;
}

TEST_F(bkdoc_selection, by_a_malformed_path_is_refused_with_a_caret) {
    const BkdocRun run = run_bkdoc({"cat", "--path", "light[", first});
    EXPECT_EQ(run.code, 2);
    EXPECT_EQ(run.out, "");
    EXPECT_TRUE(run.err.starts_with("bkdoc: --path: ")) << run.err;
    EXPECT_TRUE(run.err.ends_with("\nlight[\n      ^\n")) << run.err;
}

} // namespace
