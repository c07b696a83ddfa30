#include "tests/support/bkdoc_run.h"

#include <gtest/gtest.h>

namespace {

BkdocRun draw(std::string_view text, std::vector<std::string> options = {}) {
    options.insert(options.begin(), "tree");
    options.push_back("-");
    return run_bkdoc(options, text);
}

TEST(bkdoc_tree, groups_entries_types_and_values_are_drawn) {
    const BkdocRun run = draw("#Brellwick_Serial_Version 1.2\n"
                              "#units \"metre\"\n"
                              "camera<perspective> \"quay\" {\n"
                              "    position[3] 1.0, 2.50, -3.0\n"
                              "    look_at(0, 1.5)\n"
                              "    enabled yes\n"
                              "    parent <empty>\n"
                              "}\n"
                              "light { power 60 }\n");
    EXPECT_EQ(run.code, 0);
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(run.out, "<stdin>  version 1.2, 3 entries\n"
                       "├── #units  keyword, string  \"metre\"\n"
                       "├── camera<perspective>  template  \"quay\"  { 4 entries }\n"
                       "│   ├── position[3]  array, 3 doubles   1.0, 2.50, -3.0\n"
                       "│   ├── look_at      call, int, double  (0, 1.5)\n"
                       "│   ├── enabled      bool               yes\n"
                       "│   └── parent       empty\n"
                       "└── light  { 1 entry }\n"
                       "    └── power  int  60\n");
}

TEST(bkdoc_tree, depth_says_how_many_levels_are_drawn) {
    const char* text = "a { b { c 1 } } d 2\n";
    EXPECT_EQ(draw(text, {"--depth", "0"}).out, "<stdin>  version 1.0, 2 entries\n");
    EXPECT_EQ(draw(text, {"--depth", "1"}).out, "<stdin>  version 1.0, 2 entries\n"
                                                "├── a  { 1 entry }\n"
                                                "└── d  int  2\n");
    EXPECT_EQ(draw(text, {"--depth", "2"}).out, "<stdin>  version 1.0, 2 entries\n"
                                                "├── a  { 1 entry }\n"
                                                "│   └── b  { 1 entry }\n"
                                                "└── d  int  2\n");
}

TEST(bkdoc_tree, a_long_string_is_cut_and_its_full_length_told) {
    const BkdocRun run = draw("a \"" + std::string(1234, 'x') + "\"\n");
    EXPECT_NE(run.out.find("\"" + std::string(48, 'x') + "…\" (1,234 characters)\n"), std::string::npos)
        << run.out;
}

TEST(bkdoc_tree, a_string_stays_on_its_line) {
    const BkdocRun run = draw("#Brellwick_Serial_Version 1.2\na \"one\\ntwo\\t\\\"three\\\" \x1B[2J\"\n");
    EXPECT_NE(run.out.find("\"one\\ntwo\\t\\\"three\\\" \\x1B[2J\"\n"), std::string::npos) << run.out;
}

TEST(bkdoc_tree, a_long_list_is_cut_and_its_count_told) {
    std::string text = "a";
    for (int i = 0; i < 1200; ++i) {
        text += " 7.25";
    }
    const BkdocRun run = draw(text + "\n");
    EXPECT_NE(run.out.find("1,200 doubles"), std::string::npos) << run.out;
    EXPECT_NE(run.out.find("7.25, … (1,200 values)\n"), std::string::npos) << run.out;
    EXPECT_LT(run.out.size(), 300U);
}

TEST(bkdoc_tree, binary_data_is_shown_by_its_first_bytes_and_its_size) {
    EXPECT_NE(draw("a 0x01FF00010000\n").out.find("data  0x01FF (2 bytes)\n"), std::string::npos);
    const BkdocRun run = draw("a 0x" + std::string(200, 'A') + "00000000\n");
    EXPECT_NE(run.out.find("0x" + std::string(32, 'A') + "… (100 bytes)\n"), std::string::npos) << run.out;
}

TEST(bkdoc_tree, no_colours_go_to_a_file) {
    EXPECT_EQ(draw("a { b 1 \"x\" yes }\n").out.find('\x1B'), std::string::npos);
}

TEST(bkdoc_tree, far_down_the_depth_is_told_instead_of_drawn) {
    std::string text;
    for (int i = 0; i < 30; ++i) {
        text += "a { ";
    }
    text += "b 1 ";
    text.append(30, '}');
    const BkdocRun run = draw(text);
    EXPECT_EQ(run.code, 0);
    EXPECT_NE(run.out.find("…31 └── b  int  1\n"), std::string::npos) << run.out;
}

} // namespace
