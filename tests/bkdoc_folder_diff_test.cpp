#include "tests/support/bkdoc_run.h"

#include <gtest/gtest.h>

// `diff` of two folders compares them document by document.

namespace {

class bkdoc_folder_diff : public testing::Test {
protected:
    BkdocRun run(const std::vector<std::string>& arguments) {
        return run_bkdoc_in(folder_.path(), arguments);
    }
    void write(const std::string& name, std::string_view before, std::string_view after) {
        folder_.write("old/" + name, before);
        folder_.write("new/" + name, after);
    }

    ScratchFolder folder_;
};

TEST_F(bkdoc_folder_diff, matches_documents_by_their_paths) {
    write("a.bkd", "power 1\n", "power 2\n");
    write("deep/er/b.bkd", "name \"x\"\n", "name \"x\" // same\n");
    write("notes.txt", "no document 1", "no document 2");
    folder_.write("old/deep/gone.bkd", "x 1\n");
    folder_.write("new/added.bkd", "x 1\n");
    const BkdocRun diff = run({"diff", "old", "new"});
    EXPECT_EQ(diff.out, "new/a.bkd:1 power 1 -> 2\nonly in new: added.bkd\nonly in old: deep/gone.bkd\n");
    EXPECT_EQ(diff.err, "");
    EXPECT_EQ(diff.code, 1);
    EXPECT_EQ(run({"diff", "old/", "new/"}).out, diff.out);
    EXPECT_EQ(run_bkdoc_in(folder_.path("new"), {"diff", "../old", "."}).out,
              "a.bkd:1 power 1 -> 2\nonly in .: added.bkd\nonly in ../old: deep/gone.bkd\n");
}

TEST_F(bkdoc_folder_diff, that_hold_the_same_give_nothing) {
    write("a.bkd", "power 1.0\n", "power = 1.0 // watt\n");
    const BkdocRun diff = run({"diff", "old", "new"});
    EXPECT_EQ(diff.out, "");
    EXPECT_EQ(diff.code, 0);
    EXPECT_EQ(run({"diff", "--stat", "old", "new"}).out, "0 differences\n1 document compared\n");
    EXPECT_EQ(run({"diff", "--json", "old", "new"}).out,
              "{\n  \"same\": true,\n  \"differences\": [],\n  \"only_in_a\": [],\n  \"only_in_b\": []\n}\n");
}

TEST_F(bkdoc_folder_diff, sums_by_file_and_names_what_one_folder_lacks) {
    write("a.bkd", "power 1\nlast 1\n", "power 2\n");
    write("b.bkd", "x 1\n", "x 1\n");
    folder_.write("old/c.bkd", "x 1\n");
    const BkdocRun stat = run({"diff", "--stat", "old", "new"});
    EXPECT_EQ(stat.out, "only in old: c.bkd\nnew/a.bkd: 1 changed\nold/a.bkd: 1 removed\n2 differences\n"
                        "2 documents compared, 1 only in old\n");
    EXPECT_EQ(stat.code, 1);
    const BkdocRun json = run({"diff", "--json", "old", "new"});
    EXPECT_TRUE(json.out.starts_with("{\n  \"same\": false,\n  \"differences\": [\n    {\n      \"kind\": "
                                     "\"value\",\n      \"file\": \"new/a.bkd\",\n"))
        << json.out;
    EXPECT_TRUE(json.out.ends_with("  ],\n  \"only_in_a\": [\n    \"c.bkd\"\n  ],\n  \"only_in_b\": []\n}\n"))
        << json.out;
}

TEST_F(bkdoc_folder_diff, a_document_that_only_one_folder_has_is_a_difference) {
    write("a.bkd", "power 1\n", "power 1\n");
    folder_.write("new/b.bkd", "x 1\n");
    EXPECT_EQ(run({"diff", "old", "new"}).code, 1);
    EXPECT_EQ(run({"diff", "--stat", "old", "new"}).code, 1);
    const BkdocRun json = run({"diff", "--json", "old", "new"});
    EXPECT_EQ(json.code, 1);
    EXPECT_TRUE(json.out.starts_with("{\n  \"same\": false,\n  \"differences\": [],\n")) << json.out;
}

TEST_F(bkdoc_folder_diff, tells_a_difference_of_an_included_file_once) {
    write("lib/part.bkd", "rough 1\n", "rough 2\n");
    write("one.bkd", "#include \"lib/part.bkd\"\na 1\n", "#include \"lib/part.bkd\"\na 1\n");
    write("two.bkd", "g {\n#include \"lib/part.bkd\"\n}\n", "g {\n#include \"lib/part.bkd\"\n}\n");
    EXPECT_EQ(run({"diff", "old", "new"}).out, "new/lib/part.bkd:1 rough 1 -> 2\n");
    write("lib/part.inc", "rough 3\n", "rough 4\n");
    for (const char* name : {"one.bkd", "two.bkd"}) {
        write(name, "#include \"lib/part.inc\"\n", "#include \"lib/part.inc\"\n");
    }
    EXPECT_EQ(run({"diff", "old", "new"}).out,
              "new/lib/part.bkd:1 rough 1 -> 2\nnew/lib/part.inc:1 rough 3 -> 4\n");
    EXPECT_EQ(run({"diff", "--no-includes", "old", "new"}).out, "new/lib/part.bkd:1 rough 1 -> 2\n");
}

TEST_F(bkdoc_folder_diff, takes_what_is_a_document_on_one_side_for_one_on_the_other) {
    write("shot", "#Brellwick_Serial_Version 1.2\nx 1\n", "x 2\n");
    EXPECT_EQ(run({"diff", "old", "new"}).out, "new/shot:1 x 1 -> 2\n");
    write("a.lamp", "x 1\n", "x 3\n");
    EXPECT_EQ(run({"diff", "--ext", "lamp", "old", "new"}).out, "new/a.lamp:1 x 1 -> 3\n");
}

TEST_F(bkdoc_folder_diff, trouble_is_exit_2_and_the_rest_is_compared) {
    write("a.bkd", "x 1 )\n", "x 1\n");
    write("b.bkd", "x 1\n", "x 2\n");
    const BkdocRun diff = run({"diff", "old", "new"});
    EXPECT_EQ(diff.code, 2);
    EXPECT_EQ(diff.out, "new/b.bkd:1 x 1 -> 2\n");
    EXPECT_TRUE(diff.err.starts_with("old/a.bkd:1:5: error: ")) << diff.err;
    folder_.make_folder("none");
    folder_.make_folder("more");
    EXPECT_EQ(run({"diff", "none", "more"}).err, "bkdoc: no document in none and more\n");
    EXPECT_EQ(run({"diff", "none", "more"}).code, 2);
    EXPECT_EQ(run({"diff", "none", "new"}).out, "only in new: a.bkd\nonly in new: b.bkd\n");
}

TEST_F(bkdoc_folder_diff, a_folder_and_a_file_are_refused) {
    write("a.bkd", "x 1\n", "x 1\n");
    const std::string reason = "bkdoc: old is a folder and new/a.bkd is not; diff compares two files or two "
                               "folders\n";
    EXPECT_EQ(run({"diff", "old", "new/a.bkd"}).err, reason);
    EXPECT_EQ(run({"diff", "new/a.bkd", "old"}).err, reason);
    EXPECT_EQ(run({"diff", "new/a.bkd", "old"}).code, 2);
    EXPECT_EQ(run({"diff", "old", "gone"}).err, "bkdoc: gone: no such file\n");
    EXPECT_EQ(run({"diff", "gone", "old"}).code, 2);
}

TEST_F(bkdoc_folder_diff, tells_a_problem_of_a_shared_include_once) {
    write("lib/part.bkd", "p 1 @\n", "p 1\n");
    write("a.bkd", "#include \"lib/part.bkd\"\na 1\n", "#include \"lib/part.bkd\"\na 2\n");
    write("b.bkd", "#include \"lib/part.bkd\"\n", "#include \"lib/part.bkd\"\n");
    const BkdocRun diff = run({"diff", "old", "new"});
    EXPECT_EQ(diff.err, "in file included from old/a.bkd:1:1:\nold/lib/part.bkd:1:5: error: unexpected '@' "
                        "[unexpected-word]\np 1 @\n    ^\n");
    EXPECT_EQ(diff.out, "new/a.bkd:2 a 1 -> 2\n");
    EXPECT_EQ(diff.code, 2);
    EXPECT_EQ(run({"tree", "--depth", "1", "old/a.bkd", "old/b.bkd"}).err, diff.err);
}

TEST_F(bkdoc_folder_diff, same_compares_folders_too) {
    write("a.bkd", "power 1.0\n", "power = 1.0 // watt\n");
    write("deep/b.bkd", "x 1\n", "x 1\n");
    const BkdocRun same = run({"same", "old/", "new"});
    EXPECT_EQ(same.out, "old and new hold the same trees (2 documents)\n");
    EXPECT_EQ(same.code, 0);
    write("a.bkd", "power 1\n", "power 1.0\n");
    EXPECT_EQ(run({"same", "--content", "old", "new"}).out,
              "old and new hold the same names and values (2 documents)\n");
    folder_.write("old/c.bkd", "x 1\n");
    const BkdocRun other = run({"same", "old", "new"});
    EXPECT_EQ(other.out, "old/a.bkd and new/a.bkd differ at power, value 1:\n  old/a.bkd: int 1\n"
                         "  new/a.bkd: double 1.0\nonly in old: c.bkd\n");
    EXPECT_EQ(other.code, 1);
    EXPECT_EQ(run({"same", "--json", "old", "new"}).err,
              "bkdoc: --json compares two files; diff --json compares folders\n");
    const BkdocRun mixed = run({"same", "old", "new/a.bkd"});
    EXPECT_EQ(mixed.err,
              "bkdoc: old is a folder and new/a.bkd is not; same compares two files or two folders\n");
    EXPECT_EQ(mixed.code, 2);
}

} // namespace
