#include "tests/support/bkdoc_run.h"

#include <gtest/gtest.h>

#if !defined(_WIN32)
#include "tests/support/other_user.h"
#endif

// When the tool cannot read or write a file, it uses the name that the user gave, and gives the system's
// reason.

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
    // Without the configuration, its include is not found.
    EXPECT_EQ(run({"set", "--no-config", "n", "=3", "shots"}).code, 2);
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

TEST_F(bkdoc_reasons, an_include_is_named_without_steps_back) {
    folder_.write("lib/part.bkd", "n 2 @\n");
    folder_.write("shots/one.bkd", "#include \"../lib/part.bkd\"\n#include \"../lib/none.bkd\"\n");
    EXPECT_EQ(
        run({"check", "--format", "gcc", "shots/one.bkd"}).out,
        "lib/part.bkd:1:5: error: unexpected '@' [unexpected-word]\n"
        "shots/one.bkd:2:1: error: '../lib/none.bkd' not found; tried lib/none.bkd, ../lib/none.bkd; -I "
        "adds a folder [include-not-found]\n");
    EXPECT_EQ(run({"deps", "--missing", "shots/one.bkd"}).out,
              "shots/one.bkd:2:1: ../lib/none.bkd: not found; tried lib/none.bkd, ../lib/none.bkd\n");
    const std::string info = run({"info", "shots/one.bkd"}).out;
    EXPECT_NE(info.find("  lib/part.bkd  found beside one.bkd\n"), std::string::npos) << info;
    folder_.write("lib/part.bkd", "n 2\n");
    folder_.write("shots/one.bkd", "#include \"../lib/part.bkd\"\n");
    EXPECT_EQ(run({"set", "-w", "n", "=3", "shots/one.bkd"}).out, "lib/part.bkd: 1 value set\n");
}

TEST_F(bkdoc_reasons, how_an_include_was_found_is_told_of_names_with_steps_back) {
    folder_.make_folder("lib/deep");
    folder_.write("lib/part.bkd", "n 1\n");
    folder_.write("shots/one.bkd", "#include \"../part.bkd\"\n");
    folder_.write("shots/two.bkd", "#include \"part.bkd\"\n");
    const std::string one = run({"info", "-I", "lib/deep", "shots/one.bkd"}).out;
    EXPECT_NE(one.find("  lib/part.bkd  found in a search folder\n"), std::string::npos) << one;
    const std::string two = run({"info", "-I", "lib", "shots/two.bkd"}).out;
    EXPECT_NE(two.find("  lib/part.bkd  found in the search folder lib\n"), std::string::npos) << two;
}

TEST_F(bkdoc_reasons, a_place_that_cannot_be_read_is_told_with_the_systems_reason) {
    folder_.make_folder("part.bkd");
    folder_.write("top.bkd", "#include \"part.bkd\"\n");
    EXPECT_EQ(run({"check", "--format", "gcc", "top.bkd"}).out,
              "top.bkd:1:1: error: 'part.bkd' not found; tried part.bkd (is a directory); -I adds a folder "
              "[include-not-found]\n");
    EXPECT_EQ(run({"deps", "--missing", "top.bkd"}).out,
              "top.bkd:1:1: part.bkd: not found; tried part.bkd (is a directory)\n");
}

#if !defined(_WIN32) // Windows has backslashes in the folders of a configuration

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

TEST_F(bkdoc_reasons, a_circle_of_links_is_told_as_one) {
    std::filesystem::create_symlink("b.bkd", folder_.path("c.bkd"));
    std::filesystem::create_symlink("c.bkd", folder_.path("b.bkd"));
    folder_.write("top.bkd", "#include \"b.bkd\"\n");
    const std::string reason = "too many levels of symbolic links";
    for (const char* verb : {"check", "tree", "cat", "info", "stats", "dump", "recover", "fmt", "deps"}) {
        EXPECT_EQ(run({verb, "b.bkd"}).err, "bkdoc: b.bkd: " + reason + "\n") << verb;
    }
    EXPECT_EQ(run({"check", "--format", "gcc", "top.bkd"}).out,
              "top.bkd:1:1: error: 'b.bkd' not found; tried b.bkd (" + reason +
                  "); -I adds a folder [include-not-found]\n");
    EXPECT_EQ(run({"deps", "top.bkd"}).out,
              "top.bkd\n\xE2\x94\x94\xE2\x94\x80\xE2\x94\x80 b.bkd  line 1  not found; tried b.bkd (" +
                  reason + ")\n");
    EXPECT_EQ(run({"check", "--key-file", "b.bkd", "a.bkd"}).err,
              "bkdoc: --key-file: b.bkd: " + reason + "\n");
}

TEST_F(bkdoc_reasons, an_include_behind_a_linked_folder_keeps_its_steps_back) {
    folder_.write("elsewhere/part.bkd", "n 2 @\n");
    folder_.make_folder("elsewhere/far");
    std::filesystem::create_directory_symlink("elsewhere/far", folder_.path("linked"));
    folder_.write("part.bkd", "n 1\n");
    folder_.write("top.bkd", "#include \"linked/../part.bkd\"\n");
    EXPECT_EQ(run({"check", "--format", "gcc", "top.bkd"}).out,
              "linked/../part.bkd:1:5: error: unexpected '@' [unexpected-word]\n");
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
    EXPECT_EQ(run_as_nobody(folder_.path(), {"fmt", "-w", "own/b.bkd", "a.bkd"}).err,
              "bkdoc: own/b.bkd" + denied + "\nbkdoc: a.bkd" + denied + "\n2 files, 0 formatted\n");
    std::filesystem::permissions(folder_.path(), std::filesystem::perms::owner_all);
}

#endif

} // namespace
