#include "tests/support/bkdoc_run.h"

#include <gtest/gtest.h>

// Command-line words that look almost like numbers, and names that look almost like values.

namespace {

class bkdoc_edit_words : public testing::Test {
protected:
    BkdocRun run(const std::vector<std::string>& arguments) {
        return run_bkdoc_in(folder_.path(), arguments);
    }

    ScratchFolder folder_;
    std::string file_ = folder_.write("a.bkd", "n 1\nx 2.0\nname \"a\"\n");
};

TEST_F(bkdoc_edit_words, a_number_that_no_type_holds_is_refused_and_makes_no_string) {
    const std::string told = "bkdoc: '99999999999' would be read as 2147483647: an int has 32 bits; write a "
                             "point to make it a double; in "
                             "quotes it is a string\n";
    for (const char* name : {"n", "x", "name"}) {
        const BkdocRun set = run({"set", name, "=99999999999", "a.bkd"});
        EXPECT_EQ(set.code, 2);
        EXPECT_EQ(set.out, "");
        EXPECT_EQ(set.err, told);
    }
    EXPECT_EQ(run({"set", "n", "+=99999999999", "a.bkd"}).err, told);
    EXPECT_EQ(run({"set", "n", "=1 2, 99999999999", "a.bkd"}).err, told);
    EXPECT_EQ(run({"set", "--type", "int", "n", "=99999999999", "a.bkd"}).err, told);
    EXPECT_EQ(run({"set", "--type", "double", "x", "=99999999999", "a.bkd"}).err, told);
    EXPECT_EQ(run({"add", "y", "99999999999", "a.bkd"}).err, told);
    EXPECT_EQ(
        run({"set", "name", "=1E3", "a.bkd"}).err,
        "bkdoc: '1E3' would be read as 1: write the exponent with a small e; in quotes it is a string\n");
    EXPECT_EQ(run({"set", "name", "=-1e400", "a.bkd"}).err,
              "bkdoc: '-1e400' would be read as -1.797e308, the lowest double: it is out of range for a "
              "double; in quotes it is a string\n");
    EXPECT_EQ(run({"set", "name", "=0x10", "a.bkd"}).code, 2);
}

TEST_F(bkdoc_edit_words, a_text_that_only_begins_like_a_number_is_a_string) {
    for (const std::string text :
         {"5 mm", "2026-11-22", "1.2.3", "1e", ".", "-", "+", "0xyz", "99999999999x"}) {
        const BkdocRun set = run({"set", "name", "=" + text, "a.bkd"});
        EXPECT_EQ(set.code, 0) << set.err;
        EXPECT_EQ(set.out, "n 1\nx 2.0\nname \"" + text + "\"\n");
    }
    EXPECT_EQ(run({"set", "--type", "string", "name", "=99999999999", "a.bkd"}).out,
              "n 1\nx 2.0\nname \"99999999999\"\n");
    EXPECT_EQ(run({"set", "x", "=99999999999.0", "a.bkd"}).out, "n 1\nx 99999999999.0\nname \"a\"\n");
}

TEST_F(bkdoc_edit_words, a_name_that_is_a_value_is_refused) {
    EXPECT_EQ(run({"rename", "n", "yes", "a.bkd"}).err,
              "bkdoc: a.bkd:1:1: n: cannot be called 'yes'; it is a boolean, and would be read as a value\n"
              "bkdoc: nothing is written\n");
    EXPECT_EQ(run({"rename", "n", "1.5", "a.bkd"}).err,
              "bkdoc: a.bkd:1:1: n: cannot be called '1.5'; it is a number, and would be read as a value\n"
              "bkdoc: nothing is written\n");
    EXPECT_EQ(run({"rename", "n", "a b", "a.bkd"}).err,
              "bkdoc: a.bkd:1:1: n: cannot be called 'a b'; names begin with a letter or _, and go on with "
              "letters, digits, _ and '.'; those of keywords begin with #\nbkdoc: nothing is written\n");
}

TEST_F(bkdoc_edit_words, the_name_of_a_keyword_is_refused_for_an_entry_that_is_none) {
    const std::string told = "bkdoc: a.bkd:1:1: n: cannot be called '";
    EXPECT_EQ(
        run({"rename", "n", "#units", "a.bkd"}).err,
        told + "#units'; it is the name of a keyword, and this entry is none\nbkdoc: nothing is written\n");
    EXPECT_NE(run({"rename", "n", "#a b", "a.bkd"}).err.find("names begin with a letter"), std::string::npos);
}

TEST_F(bkdoc_edit_words, a_result_that_no_int_holds_says_so) {
    folder_.write("big.bkd", "i 2147483647\n");
    const std::string told = "bkdoc: big.bkd:1:1: i: 2147483647 ";
    const std::string end = "; --type double makes it a double\nbkdoc: nothing is written\n";
    EXPECT_EQ(run({"set", "i", "+=1", "big.bkd"}).err,
              told + "+ 1 is out of range for an int, which has 32 bits" + end);
    EXPECT_EQ(run({"set", "--type", "int", "i", "*=1.5", "big.bkd"}).err,
              told + "* 1.5 is out of range for an int, which has 32 bits" + end);
}

TEST_F(bkdoc_edit_words, a_change_without_a_value_says_what_it_needs) {
    EXPECT_EQ(run({"set", "n", "=", "a.bkd"}).err, "bkdoc: '=' needs a value, as in =60.0 or '=\"sun\"'\n");
    EXPECT_EQ(run({"set", "n", "*=", "a.bkd"}).err, "bkdoc: *= needs a number\n");
}

TEST_F(bkdoc_edit_words, a_string_that_the_version_of_the_text_cannot_hold_says_what_helps) {
#if defined(_WIN32)
    GTEST_SKIP() << "no quote reaches the program in an argument there";
#endif
    const BkdocRun set = run({"set", "-w", "name", "=\"a\\nb\"", "a.bkd"});
    EXPECT_EQ(set.err,
              "bkdoc: a.bkd: name: texts of this version have no quotes and line ends in strings; they have "
              "with '#Brellwick_Serial_Version 1.2' as the first line\n"
              "bkdoc: a.bkd: the text form cannot carry everything\nbkdoc: nothing is written\n");
    EXPECT_EQ(set.code, 2);
}

TEST_F(bkdoc_edit_words, a_name_that_looks_like_a_value_is_warned_of) {
    const std::string told = "bkdoc: warning: 'true' is a name here, not a value: booleans are yes and no\n";
    const BkdocRun renamed = run({"rename", "n", "true", "a.bkd"});
    EXPECT_EQ(renamed.code, 0);
    EXPECT_EQ(renamed.out, "true 1\nx 2.0\nname \"a\"\n");
    EXPECT_EQ(renamed.err, told + "a.bkd: 1 name changed\n");
    EXPECT_EQ(run({"mv", "n", "true", "a.bkd"}).err, told + "a.bkd: 1 entry moved\n");
    EXPECT_EQ(run({"add", "g/true", "1", "a.bkd"}).err, told + "a.bkd: 1 entry added\n");
    EXPECT_EQ(run({"rename", "n", "inf", "a.bkd"}).err, "bkdoc: warning: 'inf' is a name here, not a value: "
                                                        "infinity is spelled +inf\na.bkd: 1 name changed\n");
    EXPECT_EQ(run({"rename", "n", "truth", "a.bkd"}).err, "a.bkd: 1 name changed\n");
}

TEST_F(bkdoc_edit_words, a_group_that_is_left_open_is_named_where_an_entry_cannot_be_added) {
    folder_.write("open.bkd", "a {\n b 1\n");
    const BkdocRun add = run({"add", "--force", "c", "1", "open.bkd"});
    EXPECT_EQ(add.code, 2);
    EXPECT_EQ(add.err, "bkdoc: open.bkd: group 'a' at open.bkd:1 is not closed: put its '}' where it ends\n"
                       "bkdoc: nothing is written\n");
    EXPECT_EQ(run({"add", "--force", "a/c", "1", "open.bkd"}).out, "a {\n b 1\n c 1\n");
}

TEST_F(bkdoc_edit_words, numbers_out_of_range_are_refused_by_the_name_of_their_option) {
    EXPECT_EQ(run({"stats", "--top", "-1", "a.bkd"}).err, "bkdoc: --top needs a whole number, not '-1'\n");
    EXPECT_EQ(run({"stats", "--top", "99999999999999999999", "a.bkd"}).err,
              "bkdoc: --top takes no number as large as 99999999999999999999\n");
    EXPECT_EQ(run({"fmt", "--indent", "101", "a.bkd"}).err, "bkdoc: --indent takes at most 100\n");
    EXPECT_EQ(run({"fmt", "--width", "1000001", "a.bkd"}).err, "bkdoc: --width takes at most 1,000,000\n");
    EXPECT_EQ(run({"fmt", "--indent", "100", "--width", "1000000", "a.bkd"}).code, 0);
}

TEST_F(bkdoc_edit_words, blank_lines_around_what_goes_become_one) {
    folder_.write("b.bkd", "a 1\n\nb 2\n\ng {\n\n    c 3\n\n    d 4\n}\n");
    EXPECT_EQ(run({"rm", "b", "b.bkd"}).out, "a 1\n\ng {\n\n    c 3\n\n    d 4\n}\n");
    EXPECT_EQ(run({"mv", "b", "g/b", "b.bkd"}).out, "a 1\n\ng {\n\n    c 3\n\n    d 4\n    b 2\n}\n");
    EXPECT_EQ(run({"rm", "g/c", "b.bkd"}).out, "a 1\n\nb 2\n\ng {\n\n    d 4\n}\n");
    EXPECT_EQ(run({"rm", "a", "b.bkd"}).out, "\nb 2\n\ng {\n\n    c 3\n\n    d 4\n}\n");
}

} // namespace
