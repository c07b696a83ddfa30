#include "tests/support/bkdoc_run.h"

#include <gtest/gtest.h>

#include <filesystem>
namespace {

/// A folder of documents that share an include with a problem.
class BkdocCheckFiles : public testing::Test {
protected:
    BkdocCheckFiles() {
        folder.write("lib/part.bkd", "p ! 1\n");
        for (const char* name : {"a", "b", "c"}) {
            folder.write("shots/" + std::string(name) + ".bkd",
                         "#include \"../lib/part.bkd\"\n" + std::string(name) + " 1\n");
        }
    }

    std::string shots() const { return folder.path("shots"); }
    std::string included_problem(const std::string& whom) const {
        return "in " + folder.path("lib/part.bkd") + ", included by " + whom + ":\n" +
               folder.path("lib/part.bkd") + ":1:3: error: unexpected '!' [unexpected-word]\np ! 1\n  ^\n";
    }

    const ScratchFolder folder;
};

using bkdoc_check_files = BkdocCheckFiles;

TEST_F(bkdoc_check_files, of_a_folder_are_checked_and_a_problem_of_an_include_is_told_once) {
    const BkdocRun run = run_bkdoc({"check", shots()});
    EXPECT_EQ(run.code, 1);
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(run.out, included_problem("3 documents") + "3 files, 3 with problems (1 error)\n");
}

TEST_F(bkdoc_check_files, tell_the_problem_of_an_include_as_its_own_when_it_is_checked_too) {
    const BkdocRun run = run_bkdoc({"check", folder.path()});
    EXPECT_EQ(run.out, folder.path("lib/part.bkd") +
                           ":1:3: error: unexpected '!' [unexpected-word]\np ! 1\n  ^\n" +
                           "4 files, 4 with problems (1 error)\n");
}

TEST_F(bkdoc_check_files, tell_a_problem_of_an_include_once_whatever_it_skips_in_each_document) {
    folder.write("lib/part.bkd", "p true\n");
    const std::string part = folder.path("lib/part.bkd");
    const BkdocRun run = run_bkdoc({"check", shots()});
    EXPECT_EQ(run.out,
              "in " + part + ", included by 3 documents:\n" + part +
                  ":1:1: error: 'p' has no value, and 'true' is skipped: booleans are yes and no; 'a' in "
                  "line 2 of " +
                  folder.path("shots/a.bkd") +
                  " is skipped, too [not-a-boolean]\np true\n^\n3 files, 3 with problems (1 error)\n");
}

TEST_F(bkdoc_check_files, come_in_one_order_on_any_number_of_threads) {
    for (int i = 0; i < 60; ++i) {
        folder.write("shots/z" + std::to_string(i) + ".bkd", "z @ " + std::to_string(i) + "\n");
    }
    const BkdocRun alone = run_bkdoc({"check", "-j1", shots()});
    EXPECT_TRUE(alone.out.ends_with("\n63 files, 63 with problems (61 errors)\n")) << alone.out;
    for (const char* threads : {"2", "7", "64"}) {
        const BkdocRun run = run_bkdoc({"check", "-j", threads, shots()});
        EXPECT_EQ(run.out, alone.out) << threads;
        EXPECT_EQ(run.code, 1);
    }
}

TEST_F(bkdoc_check_files, of_a_folder_are_found_by_content_or_by_extension) {
    const std::string mixed = folder.make_folder("mixed");
    folder.write("mixed/readme.txt", "No document {\n");
    folder.write("mixed/scene", "// a comment\n#Brellwick_Serial_Version 1.2\na 1\n");
    folder.write("mixed/binary.dat", std::string("UDFS\0\0\0\0\0\0\0\0", 12));
    folder.write("mixed/.hidden.bkd", "a @\n");
    folder.write("mixed/scene.bak", "#Brellwick_Serial_Version 1.2\na @\n");
    folder.write("mixed/scene.bkd~", "#Brellwick_Serial_Version 1.2\na @\n");
    folder.write("mixed/.git/a.bkd", "a @\n");
    folder.write("mixed/deep/er/x.bkd", "a 1\n");
    EXPECT_EQ(run_bkdoc({"check", mixed}).out, "3 files, no problems\n");
    const BkdocRun run = run_bkdoc({"check", "--ext", "txt", mixed});
    EXPECT_EQ(run.code, 1);
    EXPECT_TRUE(run.out.starts_with(mixed + "/readme.txt:1:")) << run.out;
    EXPECT_EQ(run_bkdoc({"check", "--ext", ".bkd", "--ext", "dat", mixed}).out, "2 files, no problems\n");
    EXPECT_EQ(run_bkdoc({"check", "--ext", "bak", mixed}).code, 1);
}

TEST_F(bkdoc_check_files, are_named_by_a_list) {
    const std::string list = shots() + "/a.bkd\n" + shots() + "/b.bkd\r\n\n";
    const std::string expected = included_problem("2 documents") + "2 files, 2 with problems (1 error)\n";
    EXPECT_EQ(run_bkdoc({"check", "--files-from", "-"}, list).out, expected);
    EXPECT_EQ(run_bkdoc({"check", "--files-from", folder.write("list", list)}).out, expected);
    const std::string separated =
        shots() + "/a.bkd" + std::string(1, '\0') + shots() + "/b.bkd" + std::string(1, '\0');
    EXPECT_EQ(run_bkdoc({"check", "--files-from", "-", "-0"}, separated).out, expected);
    const BkdocRun missing = run_bkdoc({"check", "--files-from", folder.path("gone")});
    EXPECT_EQ(missing.code, 2);
    EXPECT_EQ(missing.err, "bkdoc: " + folder.path("gone") + ": no such file\n");
}

TEST_F(bkdoc_check_files, are_named_by_patterns_that_the_shell_left_alone) {
    const std::string expected = included_problem("2 documents") + "2 files, 2 with problems (1 error)\n";
    EXPECT_EQ(run_bkdoc({"check", shots() + "/[ab].bkd"}).out, expected);
    EXPECT_EQ(run_bkdoc({"check", folder.path() + "/**/[!cp]*.bkd"}).out, expected);
    EXPECT_EQ(run_bkdoc({"check", shots() + "/?.bkd"}).out,
              included_problem("3 documents") + "3 files, 3 with problems (1 error)\n");
    const BkdocRun none = run_bkdoc({"check", shots() + "/*.none"});
    EXPECT_EQ(none.code, 2);
    EXPECT_EQ(none.err, "bkdoc: " + shots() + "/*.none: no file matches this pattern\n");
}

TEST_F(bkdoc_check_files, that_cannot_be_read_are_told_and_counted) {
    const BkdocRun run = run_bkdoc({"check", folder.path("gone.bkd"), shots() + "/a.bkd"});
    EXPECT_EQ(run.code, 2);
    EXPECT_EQ(run.err, "bkdoc: " + folder.path("gone.bkd") + ": no such file\n");
    EXPECT_EQ(run.out,
              included_problem(shots() + "/a.bkd") + "2 files, 1 with problems, 1 unread (1 error)\n");
}

TEST_F(bkdoc_check_files, tell_at_most_so_many_problems_each) {
    std::string text;
    for (int i = 0; i < 60; ++i) {
        text += "n" + std::to_string(i) + " 1E5\n";
    }
    const std::string file = folder.write("many.bkd", text);
    const auto count = [](const std::string& out) {
        std::size_t found = 0;
        for (std::size_t at = out.find(": warning: "); at != std::string::npos;
             at = out.find(": warning: ", at + 1)) {
            ++found;
        }
        return found;
    };
    const BkdocRun usual = run_bkdoc({"check", file});
    EXPECT_EQ(count(usual.out), 50u);
    EXPECT_TRUE(usual.out.ends_with(file + ": 10 more problems; --max-problems 0 shows all\n60 warnings\n"))
        << usual.out;
    EXPECT_EQ(count(run_bkdoc({"check", "--max-problems", "0", file}).out), 60u);
    EXPECT_EQ(count(run_bkdoc({"check", "--max-problems", "3", file}).out), 3u);
}

TEST_F(bkdoc_check_files, have_warnings_that_are_errors_when_it_is_strict_and_are_not_told_when_allowed) {
    const std::string file = folder.write("w.bkd", "a 1E5\n");
    const BkdocRun plain = run_bkdoc({"check", file});
    EXPECT_EQ(plain.code, 0);
    EXPECT_TRUE(plain.out.starts_with(file + ":1:3: warning: ")) << plain.out;
    EXPECT_TRUE(plain.out.ends_with("\n1 warning\n")) << plain.out;
    const BkdocRun strict = run_bkdoc({"check", "--strict", file});
    EXPECT_EQ(strict.code, 1);
    EXPECT_TRUE(strict.out.starts_with(file + ":1:3: error: ")) << strict.out;
    const BkdocRun allowed = run_bkdoc({"check", "--strict", "--allow", "exponent-ignored", file});
    EXPECT_EQ(allowed.code, 0);
    EXPECT_EQ(allowed.out, "");
}

TEST_F(bkdoc_check_files, find_includes_from_everywhere_when_the_configuration_searches_its_own_folder) {
    folder.write("project/library/lamp.bkd", "power 60\n");
    const std::string file = folder.write("project/shots/quay.bkd", "#include \"library/lamp.bkd\"\n");
    EXPECT_EQ(run_bkdoc({"check", file}).code, 1);
    folder.write("project/.bkdoc.bkd", "search \".\"\n");
    EXPECT_EQ(run_bkdoc({"check", file}).code, 0);
    const BkdocRun deps = run_bkdoc({"deps", file});
    EXPECT_NE(deps.out.find("lamp.bkd  line 1\n"), std::string::npos) << deps.out;
    EXPECT_EQ(deps.out.find("/./"), std::string::npos) << deps.out;
    EXPECT_EQ(deps.out.find("\\.\\"), std::string::npos) << deps.out;
}

TEST_F(bkdoc_check_files, take_search_folders_and_rules_from_the_configuration_above_them) {
    folder.write("project/library/steel.bkd", "steel 1E5\n");
    const std::string file = folder.write("project/shots/010/scene.bkd", "#include \"steel.bkd\"\n");
    EXPECT_EQ(run_bkdoc({"check", file}).code, 1);
    const std::string config = folder.write("project/.bkdoc.bkd", "search \"library\"\nstrict yes\n");
    const BkdocRun run = run_bkdoc({"check", file});
    EXPECT_EQ(run.code, 1);
    EXPECT_TRUE(run.out.starts_with("in file included from " + file + ":1:1:\n")) << run.out;
    EXPECT_NE(run.out.find("steel.bkd:1:7: error: "), std::string::npos) << run.out;
    folder.write("project/.bkdoc.bkd", "search \"library\"\nallow \"exponent-ignored\"\n");
    EXPECT_EQ(run_bkdoc({"check", file}).code, 0);
    EXPECT_EQ(run_bkdoc({"check", "--no-config", file}).code, 1);
    EXPECT_EQ(run_bkdoc({"tree", file}).code, 0) << "every verb searches the same folders";
    folder.write("project/.bkdoc.bkd", "serach \"library\"\n");
    const BkdocRun wrong = run_bkdoc({"check", file});
    EXPECT_EQ(wrong.code, 2);
    EXPECT_NE(wrong.err.find(": 'serach' is not a setting"), std::string::npos) << wrong.err;
}

TEST_F(bkdoc_check_files, are_refused_once_with_the_place_of_the_fault_in_the_configuration) {
    const std::string config = std::filesystem::path(folder.path(".bkdoc.bkd")).make_preferred().string();
    folder.write(".bkdoc.bkd", "search \"lib\"\n  serch \"lib\"\n");
    const BkdocRun unknown = run_bkdoc({"check", shots()});
    EXPECT_EQ(unknown.err, "bkdoc: " + config +
                               ":2:3: 'serch' is not a setting, or has the wrong values; the settings are "
                               "search, allow, ext, strict and max_problems\n");
    EXPECT_EQ(unknown.code, 2);
    folder.write(".bkdoc.bkd", "search \"lib\"\nstrict true\n");
    EXPECT_EQ(run_bkdoc({"check", "--format", "gcc", shots()}).err,
              "bkdoc: " + config +
                  ":2:1: cannot be used: 'strict' has no value, and 'true' is skipped: booleans are yes and "
                  "no\n");
}

TEST_F(bkdoc_check_files, are_refused_when_the_configuration_allows_an_unknown_code) {
    folder.write("project/.bkdoc.bkd", "allow \"include-not-fuond\"\n");
    const std::string config = folder.full_path("project/.bkdoc.bkd");
    const std::string file = folder.write("project/a.bkd", "a 1\n");
    const BkdocRun run = run_bkdoc({"check", file});
    EXPECT_EQ(run.code, 2);
    EXPECT_EQ(run.err,
              "bkdoc: " + config +
                  ":1:1: allow: unknown code 'include-not-fuond'; did you mean 'include-not-found'?\n");
    EXPECT_EQ(run_bkdoc({"check", "--no-config", file}).code, 0);
}

TEST_F(bkdoc_check_files, of_a_folder_are_those_of_the_configured_extension_unless_it_is_not_used) {
    folder.write("typed/.bkdoc.bkd", "ext \"scene\"\n");
    folder.write("typed/a.scene", "a @\n");
    folder.write("typed/b.bkd", "b 1\n");
    EXPECT_EQ(run_bkdoc({"check", folder.path("typed")}).code, 1);
    EXPECT_EQ(run_bkdoc({"check", "--no-config", folder.path("typed")}).code, 0);
}

TEST_F(bkdoc_check_files, may_leave_their_includes_out) {
    const BkdocRun run = run_bkdoc({"check", "--no-includes", shots()});
    EXPECT_EQ(run.code, 0);
    EXPECT_EQ(run.out, "3 files, no problems\n");
}

TEST_F(bkdoc_check_files, are_told_in_lines_for_editors) {
    const BkdocRun run = run_bkdoc({"check", "--format", "gcc", shots(), "-"}, "x @ 1\n");
    EXPECT_EQ(run.out, "<stdin>:1:3: error: unexpected '@' [unexpected-word]\n" +
                           folder.path("lib/part.bkd") + ":1:3: error: unexpected '!' [unexpected-word]\n");
}

TEST_F(bkdoc_check_files, are_told_to_editors_by_columns_of_the_screen) {
    const auto told = [](const std::string& text) {
        return run_bkdoc({"check", "--format", "gcc", "-"}, text).out;
    };
    const std::string error = ": error: unexpected '@' [unexpected-word]\n";
    EXPECT_EQ(told("\ta @ 1\n"), "<stdin>:1:11" + error);
    EXPECT_EQ(told("a \"\xC3\xA4\" @ 1\n"), "<stdin>:1:7" + error);
    EXPECT_EQ(told("a \"\xE6\xA1\xA5\" @ 1\n"), "<stdin>:1:8" + error);
    EXPECT_EQ(told("a \"e\xCC\x81\" @ 1\n"), "<stdin>:1:7" + error);
    EXPECT_EQ(told("a \"" + std::string(6000, 'x') + "\"\t@ 1\n"), "<stdin>:1:6009" + error);
    EXPECT_EQ(told("a \xFF 1\n").substr(0, 12), "<stdin>:1:3:");
}

TEST_F(bkdoc_check_files, are_told_in_json) {
    const std::string file = shots() + "/a.bkd";
    const BkdocRun run = run_bkdoc({"check", "--json", file, folder.path("gone.bkd")});
    EXPECT_EQ(run.code, 2);
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(run.out,
              "{\n  \"problems\": [\n    {\n      \"severity\": \"error\",\n"
              "      \"code\": \"unexpected-word\",\n      \"message\": \"unexpected '!'\",\n"
              "      \"file\": \"" +
                  folder.path("lib/part.bkd") +
                  "\",\n"
                  "      \"line\": 1,\n      \"column\": 3,\n      \"offset\": 2,\n      \"length\": 1,\n"
                  "      \"included_from\": [\n        {\n          \"file\": \"" +
                  file +
                  "\",\n"
                  "          \"line\": 1,\n          \"column\": 1\n        }\n      ],\n"
                  "      \"documents\": [\n        \"" +
                  file +
                  "\"\n      ]\n    }\n  ],\n"
                  "  \"unread\": [\n    \"" +
                  folder.path("gone.bkd") +
                  ": no such file\"\n  ],\n"
                  "  \"files\": 2,\n  \"files_with_problems\": 1,\n  \"errors\": 1,\n  \"warnings\": 0,\n"
                  "  \"left_out\": 0\n}\n");
}

TEST_F(bkdoc_check_files, are_told_in_sarif) {
    const BkdocRun run = run_bkdoc({"check", "--format", "sarif", "-"}, "x @ 1\n");
    EXPECT_EQ(run.code, 1);
    const std::string told = run_bkdoc({"--version"}).out;
    const std::string version = told.substr(6, told.size() - 7); // after the name
    EXPECT_EQ(
        run.out,
        "{\n  \"$schema\": \"https://json.schemastore.org/sarif-2.1.0.json\",\n  \"version\": \"2.1.0\",\n"
        "  \"runs\": [\n    {\n      \"columnKind\": \"unicodeCodePoints\",\n      \"results\": [\n        "
        "{\n"
        "          \"ruleId\": \"unexpected-word\",\n          \"level\": \"error\",\n"
        "          \"message\": {\n            \"text\": \"unexpected '@'\"\n          },\n"
        "          \"locations\": [\n            {\n              \"physicalLocation\": {\n"
        "                \"artifactLocation\": {\n                  \"uri\": \"%3Cstdin%3E\"\n               "
        " },\n"
        "                \"region\": {\n                  \"startLine\": 1,\n                  "
        "\"startColumn\": 3,\n"
        "                  \"byteOffset\": 2,\n                  \"byteLength\": 1\n                }\n"
        "              }\n            }\n          ]\n        }\n      ],\n      \"tool\": {\n"
        "        \"driver\": {\n          \"name\": \"bkdoc\",\n          \"version\": \"" +
            version +
            "\",\n"
            "          \"rules\": [\n            {\n              \"id\": \"unexpected-word\"\n            "
            "}\n"
            "          ]\n        }\n      }\n    }\n  ]\n}\n");
}

} // namespace
