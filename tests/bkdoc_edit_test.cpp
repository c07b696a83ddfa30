#include "tests/support/bkdoc_run.h"

#include <gtest/gtest.h>

namespace {

constexpr std::string_view lights_text = "light \"quay_01\" { power   60.0   // warm\n  on yes }\n"
                                         "light \"quay_02\" { power 40 }\n";
constexpr std::string_view top_text = "// the harbour\ntitle  \"Quay\"\n\n\n#include \"lights.bkd\"\n"
                                      "shot \"010\" { camera 1 2 3 }\n";

class bkdoc_edit : public testing::Test {
protected:
    BkdocRun run(std::vector<std::string> arguments) {
        arguments.push_back(top_);
        return run_bkdoc(arguments);
    }
    void expect_unchanged() const {
        EXPECT_EQ(folder_.read("top.bkd"), top_text);
        EXPECT_EQ(folder_.read("lights.bkd"), lights_text);
    }

    ScratchFolder folder_;
    std::string lights_ = folder_.write("lights.bkd", lights_text);
    std::string top_ = folder_.write("top.bkd", top_text);
};

TEST_F(bkdoc_edit, set_changes_the_bytes_of_the_values_in_the_files_that_hold_them) {
    const BkdocRun set = run({"set", "-w", "**/light/power", "*=1.1"});
    EXPECT_EQ(set.code, 0);
    EXPECT_EQ(set.out, lights_ + ": 2 values set\n");
    EXPECT_EQ(set.err, "");
    EXPECT_EQ(folder_.read("lights.bkd"), "light \"quay_01\" { power   66.0   // warm\n  on yes }\n"
                                          "light \"quay_02\" { power 44 }\n");
    EXPECT_EQ(folder_.read("top.bkd"), top_text);
}

TEST_F(bkdoc_edit, without_w_the_result_goes_to_standard_output) {
    const BkdocRun set = run({"set", "title", "=Pier"});
    EXPECT_EQ(set.code, 0);
    EXPECT_EQ(
        set.out,
        "// the harbour\ntitle  \"Pier\"\n\n\n#include \"lights.bkd\"\nshot \"010\" { camera 1 2 3 }\n");
    EXPECT_EQ(set.err, top_ + ": 1 value set\n");
    expect_unchanged();
}

TEST_F(bkdoc_edit, a_changed_include_is_told_beside_the_result) {
    const BkdocRun set = run({"set", "light/on", "=no"});
    EXPECT_EQ(set.out, top_text);
    EXPECT_EQ(set.err,
              "bkdoc: " + lights_ +
                  ": would change, too, and is not in the output; -w changes it, --dry-run shows it\n" +
                  lights_ + ": 1 value set, but not in the output\n");
    expect_unchanged();
}

TEST_F(bkdoc_edit, standard_input_keeps_its_layout) {
    const BkdocRun set = run_bkdoc({"set", "b", "+=1", "-"}, "a  1 // one\n\n\nb   2 // two\n");
    EXPECT_EQ(set.code, 0);
    EXPECT_EQ(set.out, "a  1 // one\n\n\nb   3 // two\n");
    EXPECT_EQ(set.err, "<stdin>: 1 value set\n");
    EXPECT_EQ(run_bkdoc({"set", "-w", "b", "+=1", "-"}, "b 2\n").code, 2);
}

TEST_F(bkdoc_edit, a_dry_run_shows_a_unified_diff_and_writes_nothing) {
    const BkdocRun set = run({"set", "-w", "--dry-run", "shot/camera@1", "=9"});
    EXPECT_EQ(set.code, 0);
    EXPECT_EQ(set.out, "--- " + top_ + "\n+++ " + top_ +
                           "\n@@ -3,4 +3,4 @@\n \n \n #include \"lights.bkd\"\n"
                           "-shot \"010\" { camera 1 2 3 }\n+shot \"010\" { camera 1 9 3 }\n");
    EXPECT_EQ(set.err, top_ + ": 1 value would be set\n");
    expect_unchanged();
}

TEST_F(bkdoc_edit, a_backup_is_the_old_file) {
    EXPECT_EQ(run({"set", "-w", "--backup", "title", "=Pier"}).code, 0);
    EXPECT_EQ(folder_.read("top.bkd.bak"), top_text);
    EXPECT_EQ(run({"set", "-w", "--backup", "title", "=Mole"}).code, 0);
    EXPECT_NE(folder_.read("top.bkd.bak").find("Pier"), std::string::npos);
}

TEST_F(bkdoc_edit, nothing_found_is_exit_1) {
    for (const std::vector<std::string>& verb : {std::vector<std::string>{"set", "gone", "=1"},
                                                 {"rm", "gone"},
                                                 {"mv", "gone", "there"},
                                                 {"rename", "gone", "there"}}) {
        const BkdocRun edit = run(verb);
        EXPECT_EQ(edit.code, 1);
        EXPECT_EQ(edit.out, "");
        EXPECT_EQ(edit.err, "bkdoc: nothing matches gone\n");
    }
}

TEST_F(bkdoc_edit, the_type_of_a_value_stays_unless_it_is_given) {
    EXPECT_EQ(run({"set", "**/power", "*=1.11"}).err,
              "bkdoc: " + lights_ +
                  ":3:19: light[\"quay_02\"]/power: 40 * 1.11 is 44.4, which is not an int; --type double "
                  "makes it a "
                  "double, --type int rounds it\nbkdoc: nothing is written\n");
    EXPECT_EQ(run({"set", "shot/camera@1", "=2.5"}).err,
              "bkdoc: " + top_ +
                  ":6:14: shot/camera: 2.5 is no int, as 2 is; --type double makes it a double\n"
                  "bkdoc: nothing is written\n");
    EXPECT_EQ(run({"set", "shot/camera", "=1 2 3e99"}).code, 2);
    expect_unchanged();
    EXPECT_EQ(run({"set", "-w", "shot/camera@1", "=7.0"}).code, 0);
    EXPECT_EQ(run({"set", "-w", "--type", "double", "shot/camera@2", "=2.5"}).code, 0);
    EXPECT_EQ(run({"get", "--values", "shot/camera"}).out, "1 7 2.5\n");
    EXPECT_EQ(run({"set", "title", "=5"}).code, 2);
    EXPECT_EQ(run({"set", "-w", "--type", "int", "title", "=5"}).code, 0);
    EXPECT_EQ(run({"get", "--json", "title"}).out.find("\"Quay\""), std::string::npos);
    EXPECT_EQ(run({"set", "-w", "--type", "double", "**/power", "*=1.11"}).code, 0);
    EXPECT_EQ(run({"get", "--values", "**/power"}).out, "66.6\n44.4\n");
    EXPECT_EQ(run({"set", "-w", "--type", "int", "light[0]/power", "/=7"}).code, 0);
    EXPECT_EQ(run({"get", "--values", "**/power"}).out, "10\n44.4\n");
}

TEST_F(bkdoc_edit, set_takes_lists_and_refuses_what_is_no_change) {
    EXPECT_EQ(run({"set", "-w", "shot/camera", "=7 8"}).out, top_ + ": 3 values set\n");
    EXPECT_EQ(run({"get", "--values", "shot/camera"}).out, "7 8\n");
    EXPECT_EQ(run({"set", "-w", "shot/camera", "-=1"}).out, top_ + ": 2 values set\n");
    EXPECT_EQ(run({"get", "--values", "shot/camera"}).out, "6 7\n");
    EXPECT_EQ(run({"set", "shot", "=1 2"}).err, "bkdoc: " + top_ +
                                                    ":6:1: shot: has 1 value before its group; give as many\n"
                                                    "bkdoc: nothing is written\n");
    EXPECT_EQ(run({"set", "title", "5"}).err,
              "bkdoc: '5' is not a change; write =VALUES, +=N, -=N, *=N or /=N\n");
    EXPECT_EQ(run({"set", "title", "*=x"}).err, "bkdoc: *= needs a number, not 'x'\n");
    EXPECT_EQ(run({"set", "light/on", "=true"}).err,
              "bkdoc: 'true' is not a boolean; booleans are yes and no\n");
    EXPECT_EQ(run({"set", "light/power", "=1 y 2"}).code, 2);
    EXPECT_EQ(run({"set", "light/power", "/=0"}).code, 2);
    EXPECT_EQ(run({"set", "-w", "title", "+= 7"}).code, 2);
}

TEST_F(bkdoc_edit, faulty_input_is_refused_without_force_and_then_no_file_is_written) {
    const std::string bad = folder_.write("bad.bkd", "a 1\nb @ 2\nc }\nd 4\n");
    const BkdocRun refused = run({"set", "-w", "*", "+=1", bad});
    EXPECT_EQ(refused.code, 2);
    EXPECT_NE(refused.err.find(bad + ": has errors; --force changes it anyway\n"), std::string::npos);
    EXPECT_TRUE(refused.err.ends_with("bkdoc: nothing is written\n")) << refused.err;
    EXPECT_EQ(folder_.read("bad.bkd"), "a 1\nb @ 2\nc }\nd 4\n");
    expect_unchanged();
    const BkdocRun forced = run_bkdoc({"set", "-w", "--force", "a", "+=1", bad});
    EXPECT_EQ(forced.code, 0) << forced.err;
    EXPECT_EQ(folder_.read("bad.bkd"), "a 2\nb @ 2\nc }\nd 4\n");
}

TEST_F(bkdoc_edit, a_file_that_several_documents_include_is_changed_once) {
    const std::string other = folder_.write("other.bkd", "#include \"lights.bkd\"\nx 1\n");
    const BkdocRun set = run({"set", "-w", "light/power", "*=2", other});
    EXPECT_EQ(set.code, 0) << set.err;
    EXPECT_EQ(set.out, lights_ + ": 2 values set\n");
    EXPECT_NE(folder_.read("lights.bkd").find("power   120.0 "), std::string::npos);
    const std::string inner = folder_.write("inner.bkd", "group {\n#include \"lights.bkd\"\n}\n");
    const BkdocRun clash = run({"set", "-w", "light[0]/power", "*=2", inner, other});
    EXPECT_EQ(clash.code, 0) << clash.err; // inner.bkd has no light outside its group
    const BkdocRun conflict = run({"rm", "-w", "**/light[0]", lights_});
    EXPECT_EQ(conflict.code, 0) << conflict.err;
    const std::string half = folder_.write("half.bkd", "light \"a\" { power 1 }\n#include \"lights.bkd\"\n");
    const BkdocRun ways = run({"set", "-w", "light[0]/power", "+=1", half});
    EXPECT_EQ(ways.code, 0) << ways.err;
    const std::string two = folder_.write("two.bkd", "light \"b\" { power 1 }\nlight \"c\" { power 2 }\n");
    const std::string p = folder_.write("p.bkd", "#include \"two.bkd\"\n");
    const std::string q = folder_.write("q.bkd", "light \"a\" { power 1 }\n#include \"two.bkd\"\n");
    const BkdocRun apart = run_bkdoc({"set", "-w", "light[1]/power", "+=1", p, q});
    EXPECT_EQ(apart.code, 2);
    EXPECT_EQ(apart.err, "bkdoc: " + two + ": would change in one way for " + p + " and in another for " + q +
                             "; change this file on its own\nbkdoc: nothing is written\n");
}

TEST_F(bkdoc_edit, add_makes_an_entry_and_the_groups_on_the_way) {
#if defined(_WIN32)
    GTEST_SKIP() << "the shell there takes the quotes of a word away";
#endif
    const BkdocRun add = run_bkdoc({"add", "-w", "lamp<spot>[\"a\"]/power", "60.0", top_});
    EXPECT_EQ(add.code, 0) << add.err;
    EXPECT_EQ(add.out, top_ + ": 1 entry added\n");
    EXPECT_EQ(folder_.read("top.bkd"), std::string(top_text) + "lamp<spot> \"a\" {\n    power 60.0\n}\n");
    EXPECT_EQ(run_bkdoc({"add", "-w", "shot/lens", "35", "\"wide\"", "{ f 2.8 }", top_}).code, 0);
    EXPECT_EQ(run({"get", "--values", "shot/lens"}).out, "35 \"wide\" { f 2.8 }\n");
    EXPECT_EQ(run_bkdoc({"add", "-w", "shot/note", "on the pier", top_}).code, 0);
    EXPECT_EQ(run({"get", "--values", "shot/note"}).out, "on the pier\n");
    EXPECT_EQ(run_bkdoc({"add", "light[power>1]/x", "1", top_}).code, 0); // such a light exists
    EXPECT_EQ(run_bkdoc({"add", "gone[power>1]/x", "1", top_}).code, 2);
    EXPECT_EQ(run_bkdoc({"add", "-w", "light[1]/name", "moon", top_}).out, lights_ + ": 1 entry added\n");
}

TEST_F(bkdoc_edit, rm_removes_entries_with_their_lines_and_values) {
    const BkdocRun rm = run({"rm", "-w", "light[0]"});
    EXPECT_EQ(rm.code, 0) << rm.err;
    EXPECT_EQ(rm.out, lights_ + ": 1 entry removed\n");
    EXPECT_EQ(folder_.read("lights.bkd"), "light \"quay_02\" { power 40 }\n");
    EXPECT_EQ(run({"rm", "-w", "shot/camera@1"}).out, top_ + ": 1 value removed\n");
    EXPECT_EQ(run({"get", "--values", "shot/camera"}).out, "1 3\n");
}

TEST_F(bkdoc_edit, mv_moves_one_entry) {
    const BkdocRun mv = run_bkdoc({"mv", "-w", "shot/camera", "cameras/main", top_});
    EXPECT_EQ(mv.code, 0) << mv.err;
    EXPECT_EQ(mv.out, top_ + ": 1 entry moved\n");
    EXPECT_EQ(run({"get", "--values", "cameras/main"}).out, "1 2 3\n");
    EXPECT_EQ(run_bkdoc({"mv", "light", "lamp", top_}).err,
              "bkdoc: " + top_ +
                  ": light finds 2 entries; name one of them, as in light[\"quay_01\"]\n"
                  "bkdoc: nothing is written\n");
    EXPECT_EQ(run_bkdoc({"mv", "shot", "shot/inner", top_}).code, 2);
}

TEST_F(bkdoc_edit, mv_warns_where_a_group_of_the_new_name_is_there) {
    const std::string file = folder_.write("a.bkd", "fog { a 1 }\nworld { b 2 }\nlight { c 3 }\nx 1\n");
    const std::string beside =
        ":2:1: world: this group is there already, and now there are two; to move the entry into it, "
        "write world/fog\n";
    EXPECT_EQ(run_bkdoc({"mv", "-w", "fog", "world", file}).err, "bkdoc: warning: " + file + beside);
    EXPECT_EQ(folder_.read("a.bkd").find("fog"), std::string::npos);
    EXPECT_EQ(run_bkdoc({"mv", "-w", "light", "world[0]/light", file}).err, "");
    EXPECT_EQ(run_bkdoc({"mv", "-w", "x", "world[0]/x", file}).err, "");
}

TEST_F(bkdoc_edit, rename_changes_names_and_if_asked_the_strings_that_equal_them) {
    folder_.write("top.bkd", "#include \"lights.bkd\"\nuses \"light\" \"lights\"\n");
    const BkdocRun plain = run({"rename", "--dry-run", "light", "lamp"});
    EXPECT_EQ(plain.err, lights_ + ": 2 names would be changed\n");
    const BkdocRun refs = run({"rename", "--refs", "-w", "light", "lamp"});
    EXPECT_EQ(refs.code, 0) << refs.err;
    EXPECT_EQ(refs.out, top_ + ":2:1: uses@0: \"light\" -> \"lamp\"\n" + lights_ + ": 2 names changed\n" +
                            top_ + ": 1 name changed\n3 names changed in 2 files\n");
    EXPECT_EQ(folder_.read("top.bkd"), "#include \"lights.bkd\"\nuses \"lamp\" \"lights\"\n");
    EXPECT_EQ(
        run({"rename", "lamp", "a b"}).err,
        "bkdoc: " + lights_ +
            ":1:1: lamp[\"quay_01\"]: cannot be called 'a b'; names begin with a letter or _, and go on "
            "with letters, digits, _ and '.'; those of keywords begin with #\nbkdoc: nothing is written\n");
}

TEST_F(bkdoc_edit, the_binary_form_is_changed_in_its_form) {
    const std::string binary = folder_.path("lights.bin");
    ASSERT_EQ(run_bkdoc({"convert", "--to", "binary", lights_, binary}).code, 0);
    EXPECT_EQ(run_bkdoc({"set", "-w", "light/power", "+=1", binary}).out, binary + ": 2 values set\n");
    EXPECT_EQ(run_bkdoc({"get", "--values", "light/power", binary}).out, "61.0\n41\n");
}

// The shell of Windows removes the backslash and the quotes.
#if !defined(_WIN32)
TEST_F(bkdoc_edit, a_string_may_hold_quotes_as_in_a_document) {
    const std::string file = folder_.write("quoted.bkd", "#Brellwick_Serial_Version 1.2\nx \"q\" // c\n");
    EXPECT_EQ(run_bkdoc({"set", "-w", "x", R"(="a\"b" 2)", file}).err, "");
    EXPECT_EQ(folder_.read("quoted.bkd"), "#Brellwick_Serial_Version 1.2\nx \"a\\\"b\" 2 // c\n");
}
#endif

} // namespace
