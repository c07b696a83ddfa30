#include "tests/support/bkdoc_run.h"

#include <gtest/gtest.h>

#include <chrono>

namespace {

class bkdoc_find : public testing::Test {
protected:
    BkdocRun run(std::vector<std::string> arguments) {
        arguments.push_back(top_);
        return run_bkdoc(arguments);
    }

    ScratchFolder folder_;
    std::string lights_ =
        folder_.write("lights.bkd", "light \"quay_01\" { power   60.0   // quay\n  on yes }\n"
                                    "light \"quay_02\" { power 40 }\n");
    std::string top_ = folder_.write("top.bkd", "title \"Quay\"\n#include \"lights.bkd\"\n"
                                                "shot<wide> \"010\" { camera 1 2 3\n\tfov 30 }\n");
};

TEST_F(bkdoc_find, get_tells_file_line_column_path_and_value) {
    const BkdocRun found = run({"get", "**/power"});
    EXPECT_EQ(found.code, 0);
    EXPECT_EQ(found.out, lights_ + ":1:19: light[\"quay_01\"]/power = 60.0\n" + //
                             lights_ + ":3:19: light[\"quay_02\"]/power = 40\n");
    EXPECT_EQ(found.err, "");
}

TEST_F(bkdoc_find, get_shows_lists_and_groups_on_one_line) {
    EXPECT_EQ(run({"get", "shot/*"}).out,
              top_ + ":3:20: shot/camera = 1 2 3\n" + top_ + ":4:2: shot/fov = 30\n");
    EXPECT_EQ(run({"get", "shot"}).out, top_ + ":3:1: shot = \"010\" { 2 entries }\n");
}

TEST_F(bkdoc_find, get_writes_values_alone_for_scripts) {
    EXPECT_EQ(run({"get", "--values", "title"}).out, "Quay\n");
    EXPECT_EQ(run({"get", "--values", "**/camera"}).out, "1 2 3\n");
    EXPECT_EQ(run({"get", "--values", "shot/camera@1"}).out, "2\n");
    EXPECT_EQ(run({"get", "--values", "shot@1"}).out, "{ camera 1 2 3 fov 30 }\n");
}

TEST_F(bkdoc_find, get_counts_and_lists_files) {
    EXPECT_EQ(run({"get", "--count", "light"}).out, "2\n");
    const BkdocRun two = run({"get", "light", "--count", lights_});
    EXPECT_EQ(two.out, lights_ + ": 2\n" + top_ + ": 2\n");
    EXPECT_EQ(run({"get", "-l", "shot", lights_}).out, top_ + "\n");
}

TEST_F(bkdoc_find, get_answers_in_json) {
    EXPECT_EQ(run({"get", "--json", "light[0]"}).out, "[\n  {\n    \"file\": \"" + lights_ +
                                                          "\",\n"
                                                          "    \"line\": 1,\n"
                                                          "    \"column\": 1,\n"
                                                          "    \"path\": \"light[\\\"quay_01\\\"]\",\n"
                                                          "    \"name\": \"light\",\n"
                                                          "    \"values\": [\n"
                                                          "      \"quay_01\",\n"
                                                          "      {\"entries\": 2}\n"
                                                          "    ]\n"
                                                          "  }\n]\n");
    EXPECT_EQ(run({"get", "--json", "nothing"}).out, "[]\n");
}

TEST_F(bkdoc_find, grep_counts_lists_files_and_answers_in_json) {
    EXPECT_EQ(run({"grep", "--count", "quay"}).out, "2\n");
    EXPECT_EQ(run({"grep", "-l", "quay"}).out, top_ + "\n");
    EXPECT_EQ(run({"grep", "--values", "quay_0[2-9]"}).out, "quay_02\n");
    EXPECT_EQ(run({"grep", "--json", "nothing"}).out, "[]\n");
    EXPECT_EQ(run({"grep", "--json", "quay_02"}).out, "[\n  {\n    \"file\": \"" + lights_ +
                                                          "\",\n"
                                                          "    \"line\": 3,\n"
                                                          "    \"column\": 1,\n"
                                                          "    \"path\": \"light[\\\"quay_02\\\"]@0\",\n"
                                                          "    \"name\": \"light\",\n"
                                                          "    \"values\": [\n      \"quay_02\"\n    ]\n"
                                                          "  }\n]\n");
}

TEST_F(bkdoc_find, nothing_found_is_exit_1) {
    const BkdocRun found = run({"get", "nothing"});
    EXPECT_EQ(found.code, 1);
    EXPECT_EQ(found.out + found.err, "");
    EXPECT_EQ(run({"grep", "nothing"}).code, 1);
}

TEST_F(bkdoc_find, a_malformed_path_is_told_with_a_caret) {
    const BkdocRun found = run({"get", "light[power>]"});
    EXPECT_EQ(found.code, 2);
    EXPECT_EQ(found.err, "bkdoc: PATH: unexpected ']'; compare with a number, a string in quotes, yes or no\n"
                         "light[power>]\n            ^\n");
}

TEST_F(bkdoc_find, a_missing_include_stops_neither_get_nor_grep) {
    const std::string broken = folder_.write("broken.bkd", "a 1\n#include \"gone.bkd\"\nb 2\n");
    const BkdocRun found = run_bkdoc({"get", "b", broken});
    EXPECT_EQ(found.code, 0);
    EXPECT_EQ(found.out, broken + ":3:1: b = 2\n");
    EXPECT_EQ(found.err,
              "bkdoc: " + broken + ": has errors and may be read only in part; bkdoc check shows them\n");
    EXPECT_EQ(run_bkdoc({"grep", "2", broken}).out, broken + ":3:1: b@0 = 2\n");
    EXPECT_EQ(run_bkdoc({"get", "--no-includes", "b", broken}).err, "");
}

TEST_F(bkdoc_find, grep_looks_at_names_and_values_and_not_at_comments) {
    EXPECT_EQ(run({"grep", "quay"}).out, lights_ + ":1:1: light[\"quay_01\"]@0 = \"quay_01\"\n" + //
                                             lights_ + ":3:1: light[\"quay_02\"]@0 = \"quay_02\"\n");
    EXPECT_EQ(run({"grep", "-i", "^QUAY$"}).out, top_ + ":1:1: title@0 = \"Quay\"\n");
    EXPECT_EQ(run({"grep", "o"}).out.find("@"), std::string::npos);
    EXPECT_EQ(run({"grep", "--in", "values", "^[1-3]$"}).out,
              top_ + ":3:20: shot/camera@0 = 1\n" + top_ + ":3:20: shot/camera@1 = 2\n" + //
                  top_ + ":3:20: shot/camera@2 = 3\n");
    EXPECT_EQ(run({"grep", "--in", "names", "wide|title"}).out,
              top_ + ":1:1: title = \"Quay\"\n" + top_ + ":3:1: shot = \"010\" { 2 entries }\n");
    EXPECT_EQ(run({"grep", "--path", "shot/**", "3"}).out,
              top_ + ":3:20: shot/camera@2 = 3\n" + top_ + ":4:2: shot/fov@0 = 30\n");
}

TEST_F(bkdoc_find, grep_reads_every_stored_form) {
    const std::string binary = folder_.path("top.bin");
    ASSERT_EQ(run({"convert", "--to", "binary", top_, binary, "--no-config"}).code, 2); // three operands
    ASSERT_EQ(run_bkdoc({"convert", "--to", "binary", lights_, binary}).code, 0);
    EXPECT_EQ(run_bkdoc({"grep", "40", binary}).out, binary + ": light[\"quay_02\"]/power@0 = 40\n");
}

TEST_F(bkdoc_find, hostile_patterns_end_soon) {
    const std::string text = folder_.write("long.bkd", "a \"" + std::string(100000, 'a') + "\"\n");
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(run_bkdoc({"grep", "-l", "(a*)*(a|aa)+(a?){30}b", text}).code, 1);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(20));
    EXPECT_EQ(run_bkdoc({"grep", "((a{1000}){1000}){1000}", text}).err,
              "bkdoc: PATTERN: the pattern is too large: written out this has more than 5000 steps\n"
              "((a{1000}){1000}){1000}\n ^\n");
#if !defined(_WIN32) // the Windows shell accepts no line of that length
    EXPECT_EQ(run_bkdoc({"grep", std::string(20000, '('), text}).code, 2);
#endif
}

TEST_F(bkdoc_find, malformed_patterns_are_told_with_a_caret) {
    for (const auto& [pattern, message] :
         {std::pair{"a(b", "this '(' is not closed; write \\( for the character\na(b\n ^\n"},
          std::pair{"ab)", "this ')' closes nothing; write \\) for the character\nab)\n  ^\n"},
          std::pair{"[a", "this '[' is not closed; write \\[ for the character\n[a\n^\n"},
          std::pair{"[z-a]", "this is not a range of characters\n[z-a]\n ^\n"},
          std::pair{"*a", "there is nothing that '*' could repeat\n*a\n^\n"},
          std::pair{"a**", "a repetition cannot be repeated; put it in ( )\na**\n   ^\n"},
          std::pair{"\\q", "unknown escape; there are \\d \\w \\s \\D \\W \\S \\b \\B \\n \\r \\t\n\\q\n^\n"},
          std::pair{"a{3,2}", "a repetition is from 0 to 1000, the smaller number first\na{3,2}\n ^\n"}}) {
        const BkdocRun found = run({"grep", pattern});
        EXPECT_EQ(found.code, 2);
        EXPECT_EQ(found.err, std::string("bkdoc: PATTERN: ") + message);
    }
}

/// Whether the pattern matches the value of a document.
bool fits(const std::string& pattern, const std::string& text) {
    return run_bkdoc({"grep", "--in", "values", "--", pattern, "-"}, "x \"" + text + "\"\n").code == 0;
}

TEST(bkdoc_grep_patterns, fit_as_regular_expressions_do) {
    EXPECT_TRUE(fits("^a.c$", "abc"));
    EXPECT_TRUE(fits("^a.c$", "a\xC3\x98"
                              "c"));
    EXPECT_FALSE(fits("^a.c$", "abbc"));
    EXPECT_TRUE(fits("^(ab|cd)+$", "abcdab"));
    EXPECT_FALSE(fits("^(ab|cd)+$", "abc"));
    EXPECT_TRUE(fits("^[^a-c]{2,3}$", "xyz"));
    EXPECT_FALSE(fits("^[^a-c]{2,3}$", "wxyz"));
    EXPECT_TRUE(fits("^\\d+\\.\\d*?$", "10.5"));
    EXPECT_TRUE(fits("\\bquay\\b", "the quay, lit"));
    EXPECT_FALSE(fits("\\bquay\\b", "quays"));
    EXPECT_TRUE(fits("^$", ""));
    EXPECT_TRUE(fits("^(|x)y?$", ""));
    EXPECT_TRUE(fits("a{,2}", "a{,2}"));
    EXPECT_TRUE(fits("[]x]", "]"));
    EXPECT_TRUE(fits("^(a|b{2}){2,}$", "abba"));
    EXPECT_FALSE(fits("^(a|b{2}){2,}$", "ab"));
}

} // namespace
