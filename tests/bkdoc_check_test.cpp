#include "tests/support/bkdoc_run.h"

#include <gtest/gtest.h>

namespace {

BkdocRun check_text(std::string_view text) {
    return run_bkdoc({"check", "-"}, text);
}

TEST(bkdoc_check, a_clean_document_is_passed_in_silence) {
    const BkdocRun run = check_text("lens 35.0\n");
    EXPECT_EQ(run.code, 0);
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.err, "");
}

TEST(bkdoc_check, a_fault_is_shown_with_its_line_and_a_caret_under_it) {
    const BkdocRun run = check_text("lens 35.0\nfov @wide 4\n");
    EXPECT_EQ(run.code, 1);
    EXPECT_EQ(run.out, "<stdin>:2:5: error: unexpected '@wide' [unexpected-word]\n"
                       "fov @wide 4\n"
                       "    ^~~~~\n"
                       "1 error\n");
}

TEST(bkdoc_check, faults_are_told_in_the_order_of_the_text) {
    const BkdocRun run = check_text("a {\nb @ 1\nc {\nd @ 1\n");
    EXPECT_EQ(
        run.out,
        "<stdin>:1:3: error: this group is not closed: the document ends inside 2 groups, which begin at "
        "lines 1, 3 [group-left-open]\na {\n  ^\n"
        "<stdin>:2:3: error: unexpected '@' [unexpected-word]\nb @ 1\n  ^\n"
        "<stdin>:4:3: error: unexpected '@' [unexpected-word]\nd @ 1\n  ^\n"
        "3 errors\n");
}

TEST(bkdoc_check, a_column_does_not_depend_on_what_ends_the_word) {
    EXPECT_NE(check_text("a 1 @\n").out.find("<stdin>:1:5: "), std::string::npos);
    EXPECT_NE(check_text("a 1 @{ }\n").out.find("<stdin>:1:5: "), std::string::npos);
    EXPECT_NE(check_text("a 1 @").out.find("<stdin>:1:5: "), std::string::npos);
}

TEST(bkdoc_check, a_comment_that_joins_lines_does_not_shift_the_places_behind_it) {
    const BkdocRun run = check_text("// one\na 1 // two\n// three\n  b @ 2\n");
    EXPECT_EQ(run.out, "<stdin>:4:5: error: unexpected '@' [unexpected-word]\n  b @ 2\n    ^\n1 error\n");
}

TEST(bkdoc_check, a_version_line_does_not_shift_the_places_behind_it) {
    const BkdocRun run = check_text("#Brellwick_Serial_Version 1.2\na @ 1\n");
    EXPECT_EQ(run.out, "<stdin>:2:3: error: unexpected '@' [unexpected-word]\na @ 1\n  ^\n1 error\n");
}

TEST(bkdoc_check, each_way_to_end_a_line_counts_once) {
    for (const char* text : {"a 1\nb 2\nc @ 3\n", "a 1\r\nb 2\r\nc @ 3\r\n", "a 1\rb 2\rc @ 3\r"}) {
        EXPECT_EQ(check_text(text).out,
                  "<stdin>:3:3: error: unexpected '@' [unexpected-word]\nc @ 3\n  ^\n1 error\n");
    }
}

TEST(bkdoc_check, tabs_stay_so_that_the_caret_aligns) {
    const BkdocRun run = check_text("a {\n\tb\t@ 1\n}\n");
    EXPECT_EQ(run.out, "<stdin>:2:4: error: unexpected '@' [unexpected-word]\n\tb\t@ 1\n\t \t^\n1 error\n");
}

TEST(bkdoc_check, a_utf8_character_is_one_column) {
    const BkdocRun run = check_text("a \"\xC3\x98\xE2\x80\x94\" @ 1\n");
    EXPECT_EQ(run.out,
              "<stdin>:1:8: error: unexpected '@' [unexpected-word]\na \"\xC3\x98\xE2\x80\x94\" @ 1\n"
              "       ^\n1 error\n");
}

TEST(bkdoc_check, a_byte_of_no_character_is_one_column_and_shown_as_a_question_mark) {
    const BkdocRun run = check_text("a \"\xFF\x1B\" @ 1\n");
    EXPECT_EQ(
        run.out,
        "<stdin>:1:4: warning: the file holds 1 byte that is not UTF-8, the first one here: save the file "
        "as UTF-8 [not-utf-8]\na \"??\" @ 1\n   ^\n"
        "<stdin>:1:8: error: unexpected '@' [unexpected-word]\na \"??\" @ 1\n       ^\n"
        "1 error, 1 warning\n");
}

TEST(bkdoc_check, a_message_cannot_carry_control_characters_to_the_terminal) {
    const BkdocRun run = check_text("a \x1B[31m 1\n");
    EXPECT_EQ(run.out,
              "<stdin>:1:3: error: unexpected '\\x1B[31m' [unexpected-word]\na ?[31m 1\n  ^~~~~\n1 error\n");
}

TEST(bkdoc_check, of_a_long_line_the_part_around_the_fault_is_shown) {
    for (const std::size_t length : {std::size_t{2000}, std::size_t{200000}}) {
        const std::string value = "\"" + std::string(length, '1') + "\"";
        const BkdocRun run = check_text("a " + value + " @ " + value + "\n");
        EXPECT_EQ(run.out, "<stdin>:1:" + std::to_string(length + 6) +
                               ": error: unexpected '@' [unexpected-word]\n\xE2\x80\xA6" +
                               std::string(98, '1') + "\" @ \"" + std::string(57, '1') + "\xE2\x80\xA6\n" +
                               std::string(101, ' ') + "^\n1 error\n");
    }
}

TEST(bkdoc_check, a_long_word_is_cut_in_the_message) {
    const BkdocRun run = check_text("a @" + std::string(5000, 'x') + " 1\n");
    EXPECT_LT(run.out.size(), 1000U);
    EXPECT_NE(run.out.find("unexpected '@xxx"), std::string::npos);
}

TEST(bkdoc_check, a_fault_of_an_included_file_is_found_in_that_file) {
    const ScratchFolder folder;
    const std::string top = folder.write("top.bkd", "a 1\n#include \"part.bkd\"\nb @ 2\n");
    const std::string part = folder.write("part.bkd", "// a comment\nc 3\nd ! 4\n");
    const BkdocRun run = run_bkdoc({"check", "-I", folder.path(), top});
    EXPECT_EQ(run.code, 1);
    EXPECT_EQ(run.out, "in file included from " + top + ":2:1:\n" +                               //
                           part + ":3:3: error: unexpected '!' [unexpected-word]\nd ! 4\n  ^\n" + //
                           top + ":3:3: error: unexpected '@' [unexpected-word]\nb @ 2\n  ^\n2 errors\n");
}

TEST(bkdoc_check, the_whole_chain_of_includes_is_told_once_for_faults_that_follow_each_other) {
    const ScratchFolder folder;
    const std::string top = folder.write("top.bkd", "x {\n  #include \"middle.bkd\"\n}\n");
    const std::string middle = folder.write("middle.bkd", "#include \"inner.bkd\"\n");
    const std::string inner = folder.write("inner.bkd", "a ! 1\nb ? 2\n");
    const BkdocRun run = run_bkdoc({"check", "-I", folder.path(), top});
    EXPECT_EQ(run.out, "in file included from " + middle + ":1:1:\n" +  //
                           "                 from " + top + ":2:3:\n" + //
                           inner + ":1:3: error: unexpected '!' [unexpected-word]\na ! 1\n  ^\n" + inner +
                           ":2:3: error: unexpected '?' [unexpected-word]\nb ? 2\n  ^\n2 errors\n");
}

TEST(bkdoc_check, a_missing_include_is_shown_at_its_directive_with_every_place_looked_at) {
    const ScratchFolder folder;
    const std::string top = folder.write("top.bkd", "a 1\n  #include \"gone.bkd\"\n");
    const std::string other = folder.make_folder("other");
    const BkdocRun run = run_bkdoc({"check", "-I", folder.path(), "-I", other, top});
    EXPECT_EQ(run.code, 1);
    EXPECT_EQ(run.out, top + ":2:3: error: 'gone.bkd' not found; tried " + folder.path("gone.bkd") + ", " +
                           other + "/gone.bkd, gone.bkd; -I adds a folder [include-not-found]\n" +
                           "  #include \"gone.bkd\"\n  ^~~~~~~~~~~~~~~~~~~\n1 error\n");
    EXPECT_EQ(run.err, "");
}

TEST(bkdoc_check, includes_without_end_are_stopped_with_their_chain) {
    const ScratchFolder folder;
    for (int i = 0; i < 210; ++i) {
        folder.write("f" + std::to_string(i) + ".bkd", "#include \"f" + std::to_string(i + 1) + ".bkd\"\n");
    }
    const BkdocRun run = run_bkdoc({"check", "-I", folder.path(), folder.path("f0.bkd")});
    EXPECT_EQ(run.code, 1);
    EXPECT_NE(run.out.find(" is included too deeply; --trusted reads on [included-too-deeply]\n"),
              std::string::npos)
        << run.out;
    EXPECT_NE(run.out.find("                 from " + folder.path("f0.bkd") + ":1:1:\n"), std::string::npos);
}

TEST(bkdoc_check, the_worst_of_several_files_gives_the_exit_code) {
    const ScratchFolder folder;
    const std::string clean = folder.write("clean.bkd", "a 1\n");
    const std::string faulty = folder.write("faulty.bkd", "a @ 1\n");
    EXPECT_EQ(run_bkdoc({"check", clean, clean}).code, 0);
    EXPECT_EQ(run_bkdoc({"check", faulty, clean}).code, 1);
    const BkdocRun run = run_bkdoc({"check", folder.path("gone.bkd"), faulty});
    EXPECT_EQ(run.code, 2);
    EXPECT_EQ(run.err, "bkdoc: " + folder.path("gone.bkd") + ": no such file\n");
    EXPECT_NE(run.out.find(faulty + ":1:3: error: "), std::string::npos);
}

TEST(bkdoc_check, an_argument_is_not_looked_for_in_the_search_folders) {
    const ScratchFolder folder;
    folder.write("library/top.bkd", "a 1\n");
    const BkdocRun run = run_bkdoc({"check", "-I", folder.path("library"), "top.bkd"});
    EXPECT_EQ(run.code, 2);
    EXPECT_EQ(run.err, "bkdoc: top.bkd: no such file\n");
}

TEST(bkdoc_check, an_empty_document_has_no_faults) {
    EXPECT_EQ(check_text("").code, 0);
    EXPECT_EQ(check_text("// nothing\n").code, 0);
}

TEST(bkdoc_check, a_name_without_a_value_is_told_at_the_name) {
    EXPECT_EQ(check_text("a b 1\n").out,
              "<stdin>:1:1: error: 'a' has no value, and 'b' is skipped: strings need double quotes "
              "[unquoted-string]\na b 1\n^\n1 error\n");
    for (const char* text : {"a 1 b", "a 1 b\n"}) {
        EXPECT_EQ(check_text(text).out,
                  "<stdin>:1:5: error: 'b' has no value [no-value]\na 1 b\n    ^\n1 error\n");
    }
}

TEST(bkdoc_check, a_string_that_its_line_ends_is_explained) {
    EXPECT_EQ(check_text("a 1 \"x\nb 2\n").out,
              "<stdin>:1:5: error: this string is not closed on its line: a line's end is spelled '\\n' "
              "[string-left-open]\na 1 \"x\n    ^~\n1 error\n");
}

TEST(bkdoc_check, a_string_that_a_backslash_keeps_open_is_explained) {
    EXPECT_EQ(
        check_text("a \"C:\\\" 1\nb 2\n").out,
        "<stdin>:1:3: error: this string is not closed on its line: a quote after a backslash does not close "
        "it; 'b' in line 2 is skipped, too [string-left-open]\na \"C:\\\" 1\n  ^~~~~~~\n1 error\n");
}

TEST(bkdoc_check, a_version_that_is_none_is_told) {
    for (const std::string version : {"abc", "0", "-1"}) {
        const BkdocRun run = check_text("#Brellwick_Serial_Version " + version + "\na 1\n");
        EXPECT_EQ(run.code, 1);
        EXPECT_EQ(run.out, "<stdin>:1:1: error: '" + version +
                               "' is no version; the latest is 1.2 [no-version]\n#Brellwick_Serial_Version " +
                               version + "\n^" + std::string(25 + version.size(), '~') + "\n1 error\n");
    }
}

TEST(bkdoc_check, a_long_chain_of_includes_is_read_when_it_is_trusted) {
    const ScratchFolder folder;
    for (int i = 0; i < 300; ++i) {
        folder.write("f" + std::to_string(i), "#include \"f" + std::to_string(i + 1) + "\"\n");
    }
    folder.write("f300", "a 1\n");
    EXPECT_EQ(run_bkdoc({"check", "-I", folder.path(""), folder.path("f0")}).code, 1);
    const BkdocRun run = run_bkdoc({"check", "--trusted", "-I", folder.path(""), folder.path("f0")});
    EXPECT_EQ(run.code, 0) << run.out << run.err;
}

TEST(bkdoc_check, a_byte_order_mark_at_the_beginning_is_no_fault_and_no_column) {
    EXPECT_EQ(check_text("\xEF\xBB\xBF"
                         "a 1\n")
                  .code,
              0);
    EXPECT_TRUE(check_text("\xEF\xBB\xBF"
                           "a @\n")
                    .out.starts_with("<stdin>:1:3: error: unexpected '@' [unexpected-word]\na @\n  ^\n"));
}

TEST(bkdoc_check, a_byte_order_mark_within_a_file_is_made_visible) {
    EXPECT_EQ(check_text("b 2\n\xEF\xBB\xBF"
                         "a 1\n")
                  .out,
              "<stdin>:2:1: error: an invisible byte order mark is here: save the file without a byte "
              "order mark "
              "[byte-order-mark]\n?a 1\n^\n1 error\n");
}

TEST(bkdoc_check, marks_that_turn_the_direction_of_writing_are_made_visible) {
    EXPECT_TRUE(check_text("a @\xE2\x80\xAE 1\n")
                    .out.starts_with(
                        "<stdin>:1:3: error: unexpected '@\\xE2\\x80\\xAE' [unexpected-word]\na @? 1\n"));
}

} // namespace
