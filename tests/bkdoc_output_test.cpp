#include "tests/support/bkdoc_run.h"

#include <gtest/gtest.h>

#include <cstdio>

#if !defined(_WIN32)
#include <unistd.h>
#endif

namespace {

#if !defined(_WIN32)

int run_shell(const std::string& line) {
    return bkdoc_run_detail::exit_code(std::system(line.c_str()));
}

std::string tool() {
    return bkdoc_run_detail::shell_word(BK_PARSER_BKDOC);
}

TEST(bkdoc_output, a_full_disk_is_noticed) {
    if (access("/dev/full", W_OK) != 0) {
        GTEST_SKIP() << "there is no device that is always full";
    }
    const ScratchFolder folder;
    const std::string file = folder.write("a.bkd", "a @ 1\n");
    for (const char* verb : {"check", "cat", "tree", "info"}) {
        const int code = run_shell(tool() + " " + verb + " " + file + " >/dev/full 2>" + folder.path("err"));
        EXPECT_EQ(code, 2) << verb;
        EXPECT_NE(folder.read("err").find("bkdoc: standard output: "), std::string::npos) << verb;
    }
}

TEST(bkdoc_output, a_stream_that_is_closed_from_the_start_is_noticed) {
    const ScratchFolder folder;
    const std::string file = folder.write("a.bkd", "a 1\n");
    EXPECT_EQ(run_shell(tool() + " cat " + file + " >&- 2>" + folder.path("err")), 2);
    EXPECT_NE(folder.read("err").find("bkdoc: standard output: "), std::string::npos);
    EXPECT_EQ(run_shell(tool() + " check " + file + " >&-"), 0) << "there was nothing to write";
}

TEST(bkdoc_output, a_reader_that_goes_away_ends_the_tool_early_and_without_a_word) {
    const ScratchFolder folder;
    std::string text;
    for (int i = 0; i < 200'000; ++i) {
        text += "entry_" + std::to_string(i) + " 1\n";
    }
    const std::string file = folder.write("a.bkd", text);
    const std::string line = "{ " + tool() + " tree " + file + " 2>" + folder.path("err") + "; echo $? >" +
                             folder.path("code") + "; } | head -n 1 >" + folder.path("out");
    EXPECT_EQ(run_shell(line), 0);
    EXPECT_EQ(folder.read("code"), "2\n");
    EXPECT_EQ(folder.read("err"), "");
    EXPECT_EQ(folder.read("out"), file + "  version 1.0, 200,000 entries\n");
}

TEST(bkdoc_output, a_folder_as_standard_input_cannot_be_read) {
    const ScratchFolder folder;
    EXPECT_EQ(run_shell(tool() + " cat - <" + folder.path() + " 2>" + folder.path("err")), 2);
    EXPECT_EQ(folder.read("err"), "bkdoc: standard input cannot be read\n");
}

#endif

TEST(bkdoc_output, messages_of_the_library_never_go_out_raw) {
    const BkdocRun run = run_bkdoc({"check", "-"}, "a @ 1\n");
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(run.out.find("ParserGroup.set_text"), std::string::npos);
}

} // namespace
