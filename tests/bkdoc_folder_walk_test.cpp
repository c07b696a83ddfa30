#include "tests/support/bkdoc_run.h"

#include <gtest/gtest.h>

#if !defined(_WIN32)
#include "tests/support/other_user.h"

// Which documents the tool finds in a folder in which some entries cannot be read.

namespace {

class bkdoc_folder_walk : public testing::Test {
protected:
    BkdocRun run(const std::vector<std::string>& arguments) {
        return run_bkdoc_in(folder_.path(), arguments);
    }
    BkdocRun run_as_other(const std::vector<std::string>& arguments) {
        return run_as_nobody(folder_.path(), arguments);
    }
    void permit(const std::string& name, unsigned int mode) {
        std::filesystem::permissions(folder_.path(name), std::filesystem::perms{mode});
    }
    bool may_start() { return run_as_other({"check", "in/a.bkd"}).code == 0; }

    ScratchFolder folder_;
    std::string first_ = folder_.write("in/a.bkd", "n 1\n");
    std::string last_ = folder_.write("in/z.bkd", "n 3\n");
};

TEST_F(bkdoc_folder_walk, goes_on_behind_a_folder_that_may_not_be_read_and_names_it) {
    folder_.write("in/closed/m.bkd", "n 2\n");
    permit("", 0755);
    permit("in/closed", 0);
    if (!may_start()) {
        permit("in/closed", 0755);
        GTEST_SKIP() << "no other user can start the tool";
    }
    const std::string denied = "bkdoc: in/closed: permission denied\n";
    const BkdocRun check = run_as_other({"check", "in"});
    const BkdocRun get = run_as_other({"get", "n", "in"});
    const BkdocRun deps = run_as_other({"deps", "in"});
    const BkdocRun whole = run_as_other({"check", "in/closed"});
    permit("in/closed", 0755);
    EXPECT_EQ(check.err, denied);
    EXPECT_EQ(check.out, "2 files, no problems\n");
    EXPECT_EQ(check.code, 2);
    EXPECT_EQ(get.err, denied);
    EXPECT_EQ(get.out, "in/a.bkd:1:1: n = 1\nin/z.bkd:1:1: n = 3\n");
    EXPECT_EQ(get.code, 2);
    EXPECT_EQ(deps.out, "in/a.bkd\nin/z.bkd\n");
    EXPECT_EQ(whole.err, denied);
}

TEST_F(bkdoc_folder_walk, says_nothing_of_what_is_in_one_folder_when_the_other_may_not_be_read) {
    folder_.write("in/closed/m.bkd", "n 2\n");
    folder_.write("new/closed/m.bkd", "n 4\n");
    folder_.write("new/a.bkd", "n 1\n");
    folder_.write("new/z.bkd", "n 5\n");
    permit("", 0755);
    permit("in/closed", 0);
    if (!may_start()) {
        permit("in/closed", 0755);
        GTEST_SKIP() << "no other user can start the tool";
    }
    const BkdocRun diff = run_as_other({"diff", "in", "new"});
    const BkdocRun back = run_as_other({"diff", "new", "in"});
    permit("in/closed", 0755);
    EXPECT_EQ(diff.err, "bkdoc: in/closed: permission denied\n");
    EXPECT_EQ(diff.out, "new/z.bkd:1 n 3 -> 5\n");
    EXPECT_EQ(diff.code, 2);
    EXPECT_EQ(back.out, "in/z.bkd:1 n 5 -> 3\n");
}

TEST_F(bkdoc_folder_walk, tells_a_link_that_leads_nowhere) {
    std::filesystem::create_symlink("gone.bkd", folder_.path("in/link.bkd"));
    std::filesystem::create_symlink("ring.bkd", folder_.path("in/ring.bkd"));
    std::filesystem::create_symlink("gone.txt", folder_.path("in/link.txt")); // not a document
    std::filesystem::create_symlink("a.bkd", folder_.path("in/.#a.bkd"));     // the lock file of an editor
    const std::string told =
        "bkdoc: in/link.bkd: no such file\nbkdoc: in/ring.bkd: too many levels of symbolic links\n";
    const BkdocRun check = run({"check", "in"});
    EXPECT_EQ(check.err, told);
    EXPECT_EQ(check.out, "4 files, no problems, 2 unread\n");
    EXPECT_EQ(check.code, 2);
    EXPECT_EQ(run({"get", "n", "in"}).err, told);
    EXPECT_EQ(run({"fmt", "--check", "in"}).err, told + "4 files, 0 not formatted\n");
    EXPECT_EQ(run({"check", "--ext", "txt", "in"}).err, "bkdoc: in/link.txt: no such file\n");
    folder_.make_folder("same");
    std::filesystem::create_symlink("gone.bkd", folder_.path("same/link.bkd"));
    const BkdocRun diff = run({"diff", "in", "same"});
    EXPECT_EQ(diff.out, "only in in: a.bkd\nonly in in: ring.bkd\nonly in in: z.bkd\n");
    EXPECT_EQ(diff.err, "bkdoc: in/link.bkd: no such file\nbkdoc: same/link.bkd: no such file\n");
    EXPECT_EQ(diff.code, 2);
}

TEST_F(bkdoc_folder_walk, enters_no_folder_through_a_link) {
    std::filesystem::create_directory_symlink("..", folder_.path("in/up"));
    std::filesystem::create_directory_symlink(".", folder_.path("in/here.bkd"));
    EXPECT_EQ(run({"check", "in"}).out, "2 files, no problems\n");
    // A named link is followed.
    EXPECT_EQ(run({"check", "in/here.bkd"}).out, "2 files, no problems\n");
}

} // namespace

#endif
