#include "tests/support/bkdoc_run.h"

#include <gtest/gtest.h>

namespace {

BkdocRun compare(std::string_view before, std::string_view after, std::vector<std::string> options = {}) {
    const ScratchFolder folder;
    folder.write("a.bkd", before);
    folder.write("b.bkd", after);
    std::vector<std::string> arguments{"diff", folder.path("a.bkd"), folder.path("b.bkd")};
    arguments.insert(arguments.end(), options.begin(), options.end());
    BkdocRun run = run_bkdoc(arguments);
    for (std::string* text : {&run.out, &run.err}) {
        for (std::size_t i = text->find(folder.path()); i != std::string::npos;
             i = text->find(folder.path())) {
            text->erase(i, folder.path().size() + 1);
        }
    }
    return run;
}

constexpr std::string_view before = "light \"quay_01\" { power 60.0 color 1 2 3 }\n"
                                    "light \"quay_02\" { power 90.0 }\n"
                                    "lamp { a 1 b 2 }\n"
                                    "gone 5\n"
                                    "last yes\n";
constexpr std::string_view after = "light \"quay_02\" { power 99.0 }\n"
                                   "light \"quay_01\" { power 60.0 color 1 5 3 }\n"
                                   "lantern { a 1 b 2 }\n"
                                   "new \"x\" { z 1 }\n"
                                   "last yes\n";

TEST(bkdoc_diff, every_difference_is_a_line_with_its_place) {
    const BkdocRun run = compare(before, after);
    EXPECT_EQ(run.out, "b.bkd:1 light[\"quay_02\"] moved from line 2\n"
                       "b.bkd:1 light[\"quay_02\"]/power 90.0 -> 99.0\n"
                       "b.bkd:2 light[\"quay_01\"]/color@1 2 -> 5\n"
                       "b.bkd:3 lantern renamed from lamp\n"
                       "b.bkd:4 new added \"x\" { 1 entry }\n"
                       "a.bkd:4 gone removed 5\n");
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(run.code, 1);
}

TEST(bkdoc_diff, documents_that_are_the_same_give_nothing) {
    const BkdocRun run = compare("a = 1.50 // x\n", "a 1.5\n");
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.code, 0);
}

TEST(bkdoc_diff, stat_counts_by_file) {
    EXPECT_EQ(compare(before, after, {"--stat"}).out, "a.bkd: 1 removed\n"
                                                      "b.bkd: 2 changed, 1 added, 1 moved, 1 renamed\n"
                                                      "6 differences\n");
}

TEST(bkdoc_diff, json_has_all_of_it) {
    EXPECT_EQ(compare("a 1\nb 2\n", "a 1.0\n", {"--json"}).out, "{\n"
                                                                "  \"same\": false,\n"
                                                                "  \"differences\": [\n"
                                                                "    {\n"
                                                                "      \"kind\": \"value\",\n"
                                                                "      \"file\": \"b.bkd\",\n"
                                                                "      \"line\": 1,\n"
                                                                "      \"column\": 1,\n"
                                                                "      \"path\": \"a\",\n"
                                                                "      \"before\": \"1\",\n"
                                                                "      \"after\": \"1.0\"\n"
                                                                "    },\n"
                                                                "    {\n"
                                                                "      \"kind\": \"removed\",\n"
                                                                "      \"file\": \"a.bkd\",\n"
                                                                "      \"line\": 2,\n"
                                                                "      \"column\": 1,\n"
                                                                "      \"path\": \"b\",\n"
                                                                "      \"before\": \"2\"\n"
                                                                "    }\n"
                                                                "  ]\n"
                                                                "}\n");
    EXPECT_EQ(compare("a 1\n", "a 1\n", {"--json"}).out, "{\n  \"same\": true,\n  \"differences\": []\n}\n");
}

TEST(bkdoc_diff, tolerance_and_order_are_as_asked) {
    EXPECT_EQ(compare("a 1.0\nb 2\n", "b 2\na 1.01\n", {"--tolerance", "0.1", "--ignore-order"}).code, 0);
    const BkdocRun run = compare("a 1\n", "a 1\n", {"--tolerance", "x"});
    EXPECT_EQ(run.err, "bkdoc: --tolerance needs a number of 0 or more, not 'x'\n");
    EXPECT_EQ(run.code, 2);
}

TEST(bkdoc_diff, places_are_those_of_included_files) {
    const ScratchFolder folder;
    folder.write("lights.bkd", "\n\nlight 1\n");
    folder.write("a.bkd", "light 2\n");
    folder.write("b.bkd", "#include \"lights.bkd\"\n");
    const BkdocRun run = run_bkdoc({"diff", folder.path("a.bkd"), folder.path("b.bkd")});
    EXPECT_EQ(run.out, folder.path("lights.bkd") + ":3 light 2 -> 1\n");
    EXPECT_EQ(run_bkdoc({"diff", "--no-includes", folder.path("a.bkd"), folder.path("b.bkd")}).out,
              folder.path("a.bkd") + ":1 light removed 2\n");
}

TEST(bkdoc_diff, values_that_look_alike_say_what_is_different) {
    const std::string text(200, 'x');
    EXPECT_NE(
        compare("a \"" + text + "1\"\n", "a \"" + text + "2\"\n").out.find("(different from byte 201 on)\n"),
        std::string::npos);
}

TEST(bkdoc_diff, trouble_is_exit_2) {
    EXPECT_EQ(compare("a 1\n", "a 1 )\n").code, 2);
    EXPECT_EQ(run_bkdoc({"diff", "missing.bkd", "missing.bkd"}).code, 2);
}

TEST(bkdoc_diff, colours_are_there_when_asked_for) {
    EXPECT_NE(compare("a 1\n", "a 2\n", {"--color", "always"}).out.find("\x1B["), std::string::npos);
}

} // namespace
