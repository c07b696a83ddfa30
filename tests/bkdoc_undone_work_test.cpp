#include "tests/support/bkdoc_run.h"
#include "tests/support/sanitizer.h"

#include <gtest/gtest.h>

#if !defined(_WIN32)

namespace {

/// Runs a shell command: `before`, the tool with its words, `behind`.
BkdocRun run_by_shell(const std::string& before, const std::string& words, const std::string& behind = {}) {
    using namespace bkdoc_run_detail;
    const ScratchFolder folder;
    BkdocRun run;
    run.code =
        exit_code(run_line("(" + before + shell_word(BK_PARSER_BKDOC) + " " + words + " " + behind + ") >" +
                           shell_word(folder.path("out")) + " 2>" + shell_word(folder.path("err"))));
    run.out = folder.read("out");
    run.err = folder.read("err");
    return run;
}

class bkdoc_undone_work : public testing::Test {
protected:
    const ScratchFolder folder;
    const std::string text = folder.write("a.bkd", "a 1\n");
    const std::string other = folder.write("b.bkd", "b 1\n");
};

TEST_F(bkdoc_undone_work, a_full_output_is_told_by_every_verb) {
    if (!std::filesystem::exists("/dev/full")) {
        GTEST_SKIP() << "there is no device that is always full";
    }
    const std::string archive = folder.path("a.kwaf");
    ASSERT_EQ(run_bkdoc({"convert", text, archive, "--to", "archive"}).code, 0);
    const std::string faulty = folder.write("faulty.bkd", "a @\n");
    for (const std::string& words :
         {"check " + faulty, "cat " + text, "cat --compact " + text, "tree " + text, "info " + text,
          "same " + text + " " + text, "same " + text + " " + other, "convert " + text + " - --to text",
          "convert " + text + " /dev/full --to binary", "dump " + archive, std::string("--help"),
          std::string("cat --help"), std::string("--version")}) {
        const BkdocRun run = run_by_shell("", words, ">/dev/full");
        EXPECT_EQ(run.code, 2) << words;
        EXPECT_TRUE(run.err.starts_with("bkdoc: ")) << words << ": " << run.err;
    }
}

TEST_F(bkdoc_undone_work, a_text_that_finds_no_memory_is_told) {
#if defined(BK_PARSER_SANITIZED_MEMORY)
    GTEST_SKIP() << "the sanitizer takes more memory than may be had";
#endif
    // With indentation, 40,000 nested groups take more than 4 GiB.
    std::string deep;
    for (int i = 0; i < 40000; ++i) {
        deep += "a { ";
    }
    const std::string path = folder.write("deep.bkd", deep + "b 1");
    const BkdocRun run = run_by_shell("ulimit -v 400000; ", "cat " + path);
    EXPECT_EQ(run.code, 2);
    EXPECT_EQ(run.out, "");
    EXPECT_NE(run.err.find(path + ": cannot be written: "), std::string::npos) << run.err.substr(0, 200);
    const BkdocRun converted =
        run_by_shell("ulimit -v 400000; ", "convert " + path + " " + folder.path("out.bkd") + " --to text");
    EXPECT_EQ(converted.code, 2);
    EXPECT_FALSE(folder.exists("out.bkd"));
}

TEST_F(bkdoc_undone_work, what_cannot_be_read_is_told_by_every_verb) {
    const std::string missing = folder.path("missing.bkd");
    for (const std::string& words :
         {"check " + missing, "cat " + missing, "tree " + missing, "info " + missing,
          "same " + text + " " + missing, "same " + missing + " " + text,
          "convert " + missing + " " + folder.path("out") + " --to text", "dump " + missing,
          "cat --key-file " + missing + " " + text, "cat --key-file " + folder.path("") + " " + text}) {
        const BkdocRun run = run_by_shell("", words);
        EXPECT_EQ(run.code, 2) << words;
        EXPECT_TRUE(run.err.starts_with("bkdoc: ")) << words << ": " << run.err;
        EXPECT_EQ(run.out, "") << words;
    }
    EXPECT_FALSE(folder.exists("out"));
}

} // namespace

#endif
