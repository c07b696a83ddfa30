#include "tests/support/bkdoc_run.h"

#include <gtest/gtest.h>

namespace {

class BkdocDeps : public testing::Test {
protected:
    const ScratchFolder folder;
    const std::string deep = folder.write("lib/deep.bkd", "d 1\n");
    const std::string part = folder.write("lib/part.bkd", "p 1\n#include \"deep.bkd\"\n");
    const std::string top = folder.write("top.bkd", "#include \"part.bkd\"\n#include \"part.bkd\"\na 1\n");
    const std::string broken =
        folder.write("broken.bkd", "x 1\n  #include \"gone.bkd\"\n#include \"broken.bkd\"\n");

    BkdocRun run(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), "deps");
        arguments.insert(arguments.end(), {"-I", folder.path("lib")});
        return run_bkdoc(arguments);
    }
};

using bkdoc_deps = BkdocDeps;

TEST_F(bkdoc_deps, are_drawn_as_a_tree_and_once_each) {
    const BkdocRun result = run({top});
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(result.out, top +
                              "\n"
                              "\xE2\x94\x9C\xE2\x94\x80\xE2\x94\x80 " +
                              part +
                              "  line 1\n"
                              "\xE2\x94\x82   \xE2\x94\x94\xE2\x94\x80\xE2\x94\x80 " +
                              deep +
                              "  line 2\n"
                              "\xE2\x94\x94\xE2\x94\x80\xE2\x94\x80 " +
                              part + "  line 2  (drawn above)\n");
}

TEST_F(bkdoc_deps, that_are_missing_are_drawn_with_the_places_looked_at) {
    const BkdocRun result = run({broken});
    EXPECT_EQ(result.code, 1);
    const std::string tried = folder.path("gone.bkd") + ", " + folder.path("lib/gone.bkd") + ", gone.bkd";
    EXPECT_EQ(result.out, broken +
                              "\n"
                              "\xE2\x94\x9C\xE2\x94\x80\xE2\x94\x80 gone.bkd  line 2  not found; tried " +
                              tried +
                              "\n"
                              "\xE2\x94\x94\xE2\x94\x80\xE2\x94\x80 broken.bkd  line 3  includes itself\n");
    const BkdocRun missing = run({"--missing", top, broken});
    EXPECT_EQ(missing.code, 1);
    EXPECT_EQ(missing.out, broken + ":2:3: gone.bkd: not found; tried " + tried + "\n" + broken +
                               ":3:1: broken.bkd: includes itself\n");
    EXPECT_EQ(run({"--missing", top}).out, "");
    EXPECT_EQ(run({"--missing", top}).code, 0);
}

TEST_F(bkdoc_deps, that_are_missing_have_each_place_once_in_json) {
    const std::string json =
        run_bkdoc({"deps", "--json", "-I", folder.path(), "-I", folder.path(), broken}).out;
    const std::string place = '"' + folder.path("gone.bkd") + '"';
    ASSERT_NE(json.find(place), std::string::npos) << json;
    EXPECT_EQ(json.find(place), json.rfind(place)) << json;
}

TEST_F(bkdoc_deps, are_asked_the_other_way_round) {
    const BkdocRun result = run({"--reverse", deep, folder.path()});
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.out, deep +
                              "\n"
                              "\xE2\x94\x94\xE2\x94\x80\xE2\x94\x80 " +
                              part +
                              "  line 2\n"
                              "    \xE2\x94\x9C\xE2\x94\x80\xE2\x94\x80 " +
                              top +
                              "  line 1\n"
                              "    \xE2\x94\x94\xE2\x94\x80\xE2\x94\x80 " +
                              top + "  line 2\n");
    const BkdocRun lost = run({"--reverse", folder.path("lost.bkd"), folder.path()});
    EXPECT_EQ(lost.code, 2);
    EXPECT_EQ(lost.out, "");
    EXPECT_EQ(lost.err, "bkdoc: " + folder.path("lost.bkd") +
                            ": no such file; deps --missing lists the includes that are not found\n");
    const BkdocRun none = run({"--reverse", top, folder.path()});
    EXPECT_EQ(none.code, 1);
    EXPECT_EQ(none.out, top + " is included by none of the documents\n");
}

TEST_F(bkdoc_deps, are_a_graph_for_graphviz) {
    EXPECT_EQ(run({"--dot", part, broken}).out,
              "digraph includes {\n    node [shape=box];\n    \"" + part + "\";\n    \"" + deep +
                  "\";\n    \"" + broken + "\";\n    \"" + part + "\" -> \"" + deep + "\";\n    \"" + broken +
                  "\" -> \"gone.bkd\" [color=red, style=dashed];\n    \"" + broken +
                  "\" -> \"broken.bkd\" [color=red, style=dashed];\n}\n");
}

TEST_F(bkdoc_deps, are_json) {
    EXPECT_EQ(run({"--json", deep}).out, "{\n  \"documents\": [\n    \"" + deep +
                                             "\"\n  ],\n  \"files\": [\n    {\n"
                                             "      \"file\": \"" +
                                             deep + "\",\n      \"path\": \"" + deep +
                                             "\",\n"
                                             "      \"includes\": []\n    }\n  ]\n}\n");
}

TEST_F(bkdoc_deps, are_json_of_what_is_asked_for) {
    const auto file = [](const std::string& path, const std::string& includes) {
        return "    {\n      \"file\": \"" + path + "\",\n      \"path\": \"" + path +
               "\",\n      \"includes\": [\n" + includes + "      ]\n    }";
    };
    const auto include = [](const std::string& name, int line, const std::string& rest) {
        return "        {\n          \"name\": \"" + name +
               "\",\n          \"line\": " + std::to_string(line) + ",\n          \"column\": 1,\n" + rest +
               "        }";
    };
    const auto found = [](const std::string& path, const std::string& tried) {
        return "          \"found\": \"" + path + "\",\n          \"tried\": [" + tried + "]\n";
    };
    const std::string beside = "\n            \"" + folder.path("part.bkd") + "\"\n          ";
    const std::string head = "{\n  \"documents\": [\n    \"" + top + "\"\n  ],\n  \"files\": [\n";
    const BkdocRun reverse = run({"--json", "--reverse", deep, top});
    EXPECT_EQ(reverse.out, head +
                               file(top, include("part.bkd", 1, found(part, beside)) + ",\n" +
                                             include("part.bkd", 2, found(part, beside)) + "\n") +
                               ",\n" + file(part, include("deep.bkd", 2, found(deep, "")) + "\n") +
                               "\n  ]\n}\n");
    EXPECT_EQ(reverse.code, 0);
    const BkdocRun none = run({"--json", "--reverse", top, top});
    EXPECT_EQ(none.out, "{\n  \"documents\": [\n    \"" + top + "\"\n  ],\n  \"files\": []\n}\n");
    EXPECT_EQ(none.code, 1);
    const BkdocRun missing = run({"--json", "--missing", top, broken});
    EXPECT_EQ(missing.out.find("part.bkd"), std::string::npos) << missing.out;
    EXPECT_NE(missing.out.find("\"problem\": \"include-not-found\""), std::string::npos) << missing.out;
    EXPECT_EQ(missing.code, 1);
    EXPECT_EQ(run({"--dot", "--json", top}).err, "bkdoc: --dot does not go with --json\n");
    EXPECT_EQ(run({"--missing", "--reverse", deep, top}).code, 2);
}

TEST_F(bkdoc_deps, of_a_document_that_cannot_be_read_are_told_to_be_unknown) {
    const BkdocRun result = run({folder.path("none.bkd")});
    EXPECT_EQ(result.code, 2);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "bkdoc: " + folder.path("none.bkd") + ": no such file\n");
}

} // namespace
