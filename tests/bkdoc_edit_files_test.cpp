#include "tests/support/bkdoc_run.h"

#include <gtest/gtest.h>

// Which files a change affects, under which names, and what the tool says about them.

namespace {

class bkdoc_edit_files : public testing::Test {
protected:
    BkdocRun run(const std::vector<std::string>& arguments) {
        return run_bkdoc_in(folder_.path(), arguments);
    }
    /// Makes a symbolic link. False where the platform has none.
    bool link(const std::string& to, const std::string& name) {
        std::error_code failure;
        std::filesystem::create_symlink(to, folder_.path(name), failure);
        return !failure;
    }

    ScratchFolder folder_;
    std::string lamp_ = folder_.write("real/lamp.bkd", "power 1\n");
};

TEST_F(bkdoc_edit_files, a_file_that_is_named_by_a_link_too_is_changed_and_counted_once) {
    folder_.make_folder("links");
    if (!link("../real/lamp.bkd", "links/l.bkd")) {
        GTEST_SKIP() << "no symbolic links here";
    }
    const BkdocRun dry = run({"set", "--dry-run", "power", "+=1", "links/l.bkd", "real/lamp.bkd"});
    EXPECT_EQ(dry.out, "--- links/l.bkd\n+++ links/l.bkd\n@@ -1 +1 @@\n-power 1\n+power 2\n");
    EXPECT_EQ(dry.err, "links/l.bkd: 1 value would be set\n");
    const BkdocRun shown = run({"set", "power", "+=1", "real/lamp.bkd", "links/l.bkd"});
    EXPECT_EQ(shown.out, "power 2\n");
    EXPECT_EQ(shown.err, "real/lamp.bkd: 1 value set\n");
    const BkdocRun set = run({"set", "-w", "--backup", "power", "+=1", "real/lamp.bkd", "links/l.bkd"});
    EXPECT_EQ(set.out, "real/lamp.bkd: 1 value set\n");
    EXPECT_EQ(set.err, "");
    EXPECT_EQ(folder_.read("real/lamp.bkd"), "power 2\n");
    EXPECT_EQ(folder_.read("real/lamp.bkd.bak"), "power 1\n");
}

TEST_F(bkdoc_edit_files, a_link_stays_and_the_backup_stands_beside_the_file_that_it_leads_to) {
    folder_.make_folder("links");
    if (!link("../real/lamp.bkd", "links/l.bkd")) {
        GTEST_SKIP() << "no symbolic links here";
    }
    const BkdocRun set = run({"set", "-w", "--backup", "power", "=5", "links/l.bkd"});
    EXPECT_EQ(set.out, "links/l.bkd: 1 value set\n");
    EXPECT_TRUE(std::filesystem::is_symlink(folder_.path("links/l.bkd")));
    EXPECT_EQ(folder_.read("real/lamp.bkd"), "power 5\n");
    EXPECT_EQ(folder_.read("real/lamp.bkd.bak"), "power 1\n");
    EXPECT_FALSE(folder_.exists("links/l.bkd.bak"));
}

TEST_F(bkdoc_edit_files, what_becomes_of_hard_links_is_told) {
    std::error_code failure;
    std::filesystem::create_hard_link(lamp_, folder_.path("real/other.bkd"), failure);
    if (failure || std::filesystem::hard_link_count(lamp_, failure) != 2) {
        GTEST_SKIP() << "no hard links here, or none that can be counted";
    }
    EXPECT_EQ(run({"set", "--dry-run", "power", "=5", "real/lamp.bkd"}).err,
              "real/lamp.bkd: 1 value would be set\n"
              "bkdoc: real/lamp.bkd: 1 other hard link to it would keep the old content\n");
    const BkdocRun set = run({"set", "-w", "power", "=5", "real/lamp.bkd"});
    EXPECT_EQ(set.out, "real/lamp.bkd: 1 value set\n");
    EXPECT_EQ(set.err, "bkdoc: real/lamp.bkd: 1 other hard link to it keeps the old content\n");
    EXPECT_EQ(folder_.read("real/other.bkd"), "power 1\n");
    EXPECT_EQ(folder_.read("real/lamp.bkd"), "power 5\n");

    std::filesystem::create_hard_link(lamp_, folder_.path("real/third.bkd"));
    const BkdocRun both = run({"set", "-w", "power", "=6", "real/lamp.bkd", "real/third.bkd"});
    EXPECT_EQ(both.err, "bkdoc: real/lamp.bkd: is a file of its own now, and no hard link\n"
                        "bkdoc: real/third.bkd: is a file of its own now, and no hard link\n");
    EXPECT_EQ(folder_.read("real/third.bkd"), "power 6\n");
    EXPECT_EQ(run({"set", "-w", "power", "=7", "real/lamp.bkd"}).err, "");

    folder_.write("wide.bkd", "power    1\n");
    std::filesystem::create_hard_link(folder_.path("wide.bkd"), folder_.path("copy.bkd"));
    EXPECT_EQ(run({"fmt", "-w", "wide.bkd"}).err,
              "bkdoc: wide.bkd: 1 other hard link to it keeps the old content\n");
}

TEST_F(bkdoc_edit_files, what_becomes_of_hard_links_is_told_by_every_verb_that_replaces_a_file) {
    std::error_code failure;
    const auto link_again = [&] {
        folder_.write("target.bkd", "power 9\n");
        std::filesystem::remove(folder_.path("twin.bkd"));
        std::filesystem::create_hard_link(folder_.path("target.bkd"), folder_.path("twin.bkd"), failure);
    };
    link_again();
    if (failure || std::filesystem::hard_link_count(folder_.path("target.bkd"), failure) != 2) {
        GTEST_SKIP() << "no hard links here, or none that can be counted";
    }
    ASSERT_EQ(run({"convert", "--to", "binary", "real/lamp.bkd", "lamp.bin"}).err, "");
    const std::vector<std::vector<std::string>> verbs{
        {"convert", "--to", "text", "lamp.bin", "target.bkd"},
        {"recover", "lamp.bin", "-o", "target.bkd"},
        {"merge", "-w", "twin.bkd", "target.bkd", "real/lamp.bkd"}};
    for (const auto& verb : verbs) {
        link_again();
        const BkdocRun done = run(verb);
        EXPECT_EQ(done.code, 0) << verb[0];
        EXPECT_TRUE(done.err.ends_with("bkdoc: target.bkd: 1 other hard link to it keeps the old content\n"))
            << verb[0] << ": " << done.err;
        EXPECT_EQ(folder_.read("twin.bkd"), "power 9\n") << verb[0];
        EXPECT_NE(folder_.read("target.bkd").find("power 1"), std::string::npos) << verb[0];
    }
}

TEST_F(bkdoc_edit_files, what_a_document_includes_twice_is_counted_once) {
    folder_.write("twice.bkd",
                  "#include \"real/lamp.bkd\"\ng {\n#include \"real/lamp.bkd\"\n}\nuses \"power\"\n");
    folder_.write("real/lamp.bkd", "power 1\nof \"power\"\n");
    EXPECT_EQ(run({"set", "--dry-run", "**/power", "=5", "twice.bkd"}).err,
              "real/lamp.bkd: 1 value would be set\n");
    EXPECT_EQ(run({"rm", "--dry-run", "**/power", "twice.bkd"}).err,
              "real/lamp.bkd: 1 entry would be removed\n");
    EXPECT_EQ(run({"rename", "--refs", "-w", "**/power", "watt", "twice.bkd"}).out,
              "real/lamp.bkd:2:1: of@0: \"power\" -> \"watt\"\ntwice.bkd:5:1: uses@0: \"power\" -> \"watt\"\n"
              "real/lamp.bkd: 2 names changed\ntwice.bkd: 1 name changed\n3 names changed in 2 files\n");
    EXPECT_EQ(folder_.read("real/lamp.bkd"), "watt 1\nof \"watt\"\n");
}

TEST_F(bkdoc_edit_files, an_included_file_that_would_change_is_told_before_the_output) {
    folder_.write("top.bkd", "#include \"real/lamp.bkd\"\n");
    const BkdocRun set = run({"set", "power", "=5", "top.bkd"});
    EXPECT_EQ(set.out, "#include \"real/lamp.bkd\"\n");
    EXPECT_EQ(set.err,
              "bkdoc: real/lamp.bkd: would change, too, and is not in the output; -w changes it, --dry-run "
              "shows it\nreal/lamp.bkd: 1 value set, but not in the output\n");
    const BkdocRun both = run({"set", "power", "=5", "top.bkd", "real/lamp.bkd"});
    EXPECT_EQ(both.out, "#include \"real/lamp.bkd\"\npower 5\n");
    EXPECT_EQ(both.err, "real/lamp.bkd: 1 value set\n");
}

TEST_F(bkdoc_edit_files, without_includes_the_file_itself_is_changed_and_its_directives_stay) {
    folder_.write("top.bkd", "#include \"real/lamp.bkd\"\nwide 1 // metre\n");
    EXPECT_EQ(run({"set", "-w", "--no-includes", "**", "=5", "top.bkd"}).out, "top.bkd: 1 value set\n");
    EXPECT_EQ(folder_.read("top.bkd"), "#include \"real/lamp.bkd\"\nwide 5 // metre\n");
    EXPECT_EQ(run({"rename", "-w", "--no-includes", "wide", "far", "top.bkd"}).out,
              "top.bkd: 1 name changed\n");
    EXPECT_EQ(run({"add", "-w", "--no-includes", "near", "3", "top.bkd"}).out, "top.bkd: 1 entry added\n");
    EXPECT_EQ(run({"mv", "-w", "--no-includes", "far", "g/far", "top.bkd"}).out, "top.bkd: 1 entry moved\n");
    EXPECT_EQ(run({"rm", "-w", "--no-includes", "near", "top.bkd"}).out, "top.bkd: 1 entry removed\n");
    EXPECT_EQ(folder_.read("top.bkd"), "#include \"real/lamp.bkd\"\ng {\n    far 5\n}\n");
    EXPECT_EQ(folder_.read("real/lamp.bkd"), "power 1\n");
}

TEST_F(bkdoc_edit_files, a_reason_in_a_shared_file_is_told_once) {
    folder_.write("a.bkd", "#include \"real/lamp.bkd\"\n");
    folder_.write("b.bkd", "#include \"real/lamp.bkd\"\n");
    EXPECT_EQ(
        run({"set", "-w", "power", "*=1.5", "a.bkd", "b.bkd"}).err,
        "bkdoc: real/lamp.bkd:1:1: power: 1 * 1.5 is 1.5, which is not an int; --type double makes it a "
        "double, --type int rounds it\nbkdoc: nothing is written\n");
    folder_.write("real/lamp.bkd", "power 1 @\n");
    EXPECT_EQ(run({"set", "-w", "power", "*=2", "a.bkd", "b.bkd"}).err,
              "in file included from a.bkd:1:1:\nreal/lamp.bkd:1:9: error: unexpected '@' "
              "[unexpected-word]\npower 1 @\n        ^\n"
              "bkdoc: a.bkd: has errors; --force changes it anyway\n"
              "bkdoc: b.bkd: has errors; --force changes it anyway\nbkdoc: nothing is written\n");
}

#if !defined(_WIN32)

/// The output and exit code of a shell command that runs in the folder.
BkdocRun run_shell(const ScratchFolder& folder, const std::string& line) {
    const ScratchFolder results;
    const std::string script = "cd " + bkdoc_run_detail::shell_word(folder.path()) + " && (" + line + ") >" +
                               bkdoc_run_detail::shell_word(results.path("out")) + " 2>&1";
    BkdocRun run;
    run.code = bkdoc_run_detail::exit_code(bkdoc_run_detail::run_line(script));
    run.out = results.read("out");
    return run;
}

TEST_F(bkdoc_edit_files, a_dry_run_is_a_patch_that_git_and_patch_take) {
    folder_.write(".bkdoc.bkd", "search \"lib\"\n");
    folder_.write("lib/part.bkd", "power 1\n");
    folder_.write("shots/up.bkd", "#include \"../real/lamp.bkd\"\n#include \"part.bkd\"\n");
    folder_.write("shots/a name.bkd", "power 3");
    folder_.write("shots/a \"b\"\t\xE9.bkd", "power 4\n");
    const BkdocRun dry = run({"set", "--dry-run", "power", "*=2", "shots/up.bkd", "./shots/a name.bkd",
                              "shots/a \"b\"\t\xE9.bkd"});
    EXPECT_EQ(dry.out,
              "--- lib/part.bkd\n+++ lib/part.bkd\n@@ -1 +1 @@\n-power 1\n+power 2\n"
              "--- real/lamp.bkd\n+++ real/lamp.bkd\n@@ -1 +1 @@\n-power 1\n+power 2\n"
              "--- shots/a name.bkd\t\n+++ shots/a name.bkd\t\n@@ -1 +1 @@\n-power 3\n"
              "\\ No newline at end of file\n+power 6\n\\ No newline at end of file\n"
              "--- \"shots/a \\\"b\\\"\\t\xE9.bkd\"\n+++ \"shots/a \\\"b\\\"\\t\xE9.bkd\"\n@@ -1 +1 @@\n"
              "-power 4\n+power 8\n");
    folder_.write("change.patch", dry.out);
    for (const std::string program : {"patch", "git"}) {
        if (run_shell(folder_, "command -v " + program).code != 0) {
            continue;
        }
        const std::string line = program == "patch" ? "patch -p0 " : "git apply -p0 ";

        const BkdocRun applied = run_shell(folder_, line + "< change.patch");
        EXPECT_EQ(applied.code, 0) << applied.out;
        EXPECT_EQ(folder_.read("lib/part.bkd"), "power 2\n");
        EXPECT_EQ(folder_.read("real/lamp.bkd"), "power 2\n");
        EXPECT_EQ(folder_.read("shots/a name.bkd"), "power 6");
        EXPECT_EQ(folder_.read("shots/a \"b\"\t\xE9.bkd"), "power 8\n");
        EXPECT_EQ(run_shell(folder_, line + "-R < change.patch").code, 0);
        EXPECT_EQ(folder_.read("lib/part.bkd"), "power 1\n");
    }
}

TEST_F(bkdoc_edit_files, a_name_of_a_patch_leads_back_only_where_it_must) {
    folder_.make_folder("far/deep");
    folder_.write("far/lamp.bkd", "power 7\n");
    ASSERT_TRUE(link("far/deep", "near"));
    const BkdocRun dry = run({"set", "--dry-run", "power", "=1", "near/../lamp.bkd", "far/deep/../lamp.bkd"});
    EXPECT_EQ(dry.out, "--- near/../lamp.bkd\n+++ near/../lamp.bkd\n@@ -1 +1 @@\n-power 7\n+power 1\n");
    folder_.write("wide.bkd", "a    1\n");
    EXPECT_EQ(run({"fmt", "--diff", "far/../wide.bkd"}).out,
              "--- wide.bkd\n+++ wide.bkd\n@@ -1 +1 @@\n-a    1\n+a 1\n");
}

#endif

} // namespace
