#include "tests/support/bkdoc_run.h"

#include <gtest/gtest.h>

#if !defined(_WIN32)
#include <unistd.h>
#endif

// When a file cannot be read or written, the tool names it as the user did and gives the system's reason.

namespace {

class bkdoc_reasons : public testing::Test {
protected:
    BkdocRun run(const std::vector<std::string>& arguments) {
        return run_bkdoc_in(folder_.path(), arguments);
    }

    ScratchFolder folder_;
    std::string file_ = folder_.write("a.bkd", "n    1\n");
};

TEST_F(bkdoc_reasons, a_target_that_cannot_be_made_is_told_with_the_systems_reason) {
    ASSERT_EQ(run({"convert", "--to", "binary", "a.bkd", "a.bin"}).code, 0);
    const std::string told = "gone/b.bkd: there is no folder gone";
    EXPECT_EQ(run({"convert", "--to", "text", "a.bin", "gone/b.bkd"}).err,
              "bkdoc: " + told + "; nothing is written\n");
    const BkdocRun recover = run({"recover", "a.bin", "-o", "gone/b.bkd"});
    EXPECT_EQ(recover.code, 2);
    EXPECT_TRUE(recover.err.ends_with("bkdoc: " + told + "\n")) << recover.err;
    folder_.make_folder("folder");
    EXPECT_EQ(run({"convert", "--to", "text", "a.bin", "folder"}).err,
              "bkdoc: folder: is a directory; nothing is written\n");
    EXPECT_EQ(run({"convert", "--to", "text", "a.bin", ""}).err,
              "bkdoc: '': no such file; nothing is written\n");
}

TEST_F(bkdoc_reasons, the_configuration_of_a_folder_is_left_out_by_every_verb) {
    folder_.write("shots/.bkdoc.bkd", "search \"../lib\"\next \"shot\"\n");
    folder_.write("lib/part.bkd", "n 2\n");
    folder_.write("shots/one.shot", "n 1\n");
    folder_.write("shots/two.bkd", "n    3\n#include \"part.bkd\"\n");
    EXPECT_EQ(run({"get", "--values", "n", "shots"}).out, "1\n");
    EXPECT_EQ(run({"get", "--values", "--no-config", "n", "shots"}).out, "3\n");
    EXPECT_EQ(run({"get", "--values", "n", "shots/two.bkd"}).out, "3\n2\n");
    EXPECT_EQ(run({"deps", "shots"}).out, "shots/one.shot\n");
    EXPECT_EQ(run({"deps", "--no-config", "--no-includes", "shots"}).out.substr(0, 14), "shots/two.bkd\n");
    EXPECT_EQ(run({"fmt", "--check", "shots"}).out, "");
    EXPECT_EQ(run({"fmt", "--check", "--no-config", "shots"}).out, "shots/two.bkd\n");
    EXPECT_EQ(run({"set", "--no-config", "n", "=3", "shots"}).code, 2); // its include is not found
    EXPECT_EQ(run({"set", "-w", "n", "=4", "shots"}).out, "shots/one.shot: 1 value set\n");
}

TEST_F(bkdoc_reasons, a_folder_without_documents_is_told) {
    folder_.make_folder("empty/deeper");
    for (const std::vector<std::string>& verb : {std::vector<std::string>{"check"},
                                                 {"get", "n"},
                                                 {"set", "n", "=1"},
                                                 {"fmt", "--check"},
                                                 {"deps"}}) {
        std::vector<std::string> arguments = verb;
        arguments.emplace_back("empty");
        const BkdocRun none = run(arguments);
        EXPECT_EQ(none.code, 2) << verb[0];
        EXPECT_TRUE(none.err.starts_with("bkdoc: empty: no document in this folder\n")) << none.err;
    }
    folder_.write("empty/deeper/a.bkd", "n 1\n");
    EXPECT_EQ(run({"check", "empty"}).code, 0);
    EXPECT_EQ(run({"check", "--ext", "shot", "empty"}).err,
              "bkdoc: empty: no document in this folder has such an extension\n");
}

#if !defined(_WIN32) // where the folders of a configuration have backslashes

TEST_F(bkdoc_reasons, an_include_that_the_configuration_leads_to_is_told_from_the_current_folder) {
    folder_.write(".bkdoc.bkd", "search \"lib\"\n");
    folder_.write("lib/part.bkd", "n 2 @\n");
    folder_.write("shots/two.bkd", "#include \"part.bkd\"\n#include \"none.bkd\"\n");
    const auto told = [&](const std::string& folder, const std::string& file) {
        return run_bkdoc_in(folder, {"check", "--format", "gcc", file}).out;
    };
    EXPECT_EQ(told(folder_.path(), "shots/two.bkd"),
              "lib/part.bkd:1:5: error: unexpected '@' [unexpected-word]\n"
              "shots/two.bkd:2:1: error: 'none.bkd' not found; tried shots/none.bkd, lib/none.bkd, none.bkd; "
              "-I adds a folder [include-not-found]\n");
    EXPECT_EQ(told(folder_.path("shots"), "two.bkd"),
              "../lib/part.bkd:1:5: error: unexpected '@' [unexpected-word]\n"
              "two.bkd:2:1: error: 'none.bkd' not found; tried none.bkd, ../lib/none.bkd; -I adds a folder "
              "[include-not-found]\n");
    EXPECT_TRUE(told("/", folder_.path("shots/two.bkd")).starts_with(folder_.path("lib/part.bkd")));
}

/// As a user who may not write: root may write everything.
BkdocRun run_as_nobody(const std::string& folder, const std::vector<std::string>& arguments) {
    const ScratchFolder other;
    std::string before = "cd " + bkdoc_run_detail::shell_word(folder) + " && ";
    if (::geteuid() == 0) {
        before += "setpriv --reuid=65534 --regid=65534 --clear-groups ";
    }
    return run_bkdoc_on(other.write("in", ""), arguments, before);
}

TEST_F(bkdoc_reasons, what_may_not_be_written_is_told_and_stays) {
    folder_.make_folder("own");
    folder_.write("own/b.bkd", "n    1\n");
    std::filesystem::permissions(folder_.path("own"), std::filesystem::perms::all);
    std::filesystem::permissions(folder_.path("own/b.bkd"), std::filesystem::perms{0444});
    std::filesystem::permissions(folder_.path("a.bkd"), std::filesystem::perms{0666});
    std::filesystem::permissions(folder_.path(), std::filesystem::perms{0555});
    if (run_as_nobody(folder_.path(), {"check", "a.bkd"}).code != 0) {
        GTEST_SKIP() << "no other user can start the tool";
    }
    const std::string denied = ": cannot be opened for writing: permission denied";
    EXPECT_EQ(run_as_nobody(folder_.path(), {"set", "-w", "n", "=2", "own/b.bkd"}).err,
              "bkdoc: own/b.bkd" + denied + "; nothing is written\n");
    EXPECT_EQ(run_as_nobody(folder_.path(), {"fmt", "-w", "own/b.bkd"}).err,
              "bkdoc: own/b.bkd" + denied + "\n");
    EXPECT_EQ(run_as_nobody(folder_.path(), {"set", "-w", "--backup", "n", "=2", "a.bkd"}).err,
              "bkdoc: a.bkd.bak" + denied + "; nothing is written\n");
    EXPECT_EQ(run_as_nobody(folder_.path(), {"merge", "--write", "a.bkd", "own/b.bkd", "a.bkd"}).err,
              "bkdoc: own/b.bkd" + denied + "\n");
    EXPECT_EQ(run_as_nobody(folder_.path(), {"convert", "--to", "binary", "a.bkd", "a.bin"}).err,
              "bkdoc: a.bin" + denied + "; nothing is written\n");
    EXPECT_EQ(folder_.read("own/b.bkd"), "n    1\n");
    std::filesystem::permissions(folder_.path(), std::filesystem::perms::owner_all);
}

#endif

} // namespace
