#include "tests/support/bkdoc_forms.h"

#include <gtest/gtest.h>

// Messages say what was found, where, and what to do next.

namespace {

/// The report of a check of a text, without its last line.
std::string report_of(std::string_view text) {
    const BkdocRun run = run_bkdoc({"check", "-"}, text);
    EXPECT_EQ(run.code, 1);
    return run.out.substr(0, run.out.rfind('\n', run.out.size() - 2) + 1);
}

/// The one line with which the tool refuses, without the name of the tool.
std::string refusal_of(const std::vector<std::string>& arguments) {
    const BkdocRun run = run_bkdoc(arguments);
    EXPECT_EQ(run.code, 2);
    return run.err.size() > 8 ? run.err.substr(7, run.err.size() - 8) : run.err;
}

TEST(bkdoc_messages, a_boolean_of_another_language_is_told_at_its_entry) {
    EXPECT_EQ(report_of("on true\n"),
              "<stdin>:1:1: error: 'on' has no value, and 'true' is skipped: booleans are "
              "yes and no [not-a-boolean]\non true\n^~\n");
}

TEST(bkdoc_messages, a_word_that_is_none_is_unexpected) {
    EXPECT_EQ(report_of("a 1\nb 2 %\n"),
              "<stdin>:2:5: error: unexpected '%' [unexpected-word]\nb 2 %\n    ^\n");
}

TEST(bkdoc_messages, a_merge_conflict_is_told_once_with_its_lines) {
    std::string text;
    for (int i = 0; i < 34; ++i) {
        text += "a 1\n";
    }
    const std::string report = report_of(text + "<<<<<<< ours\na 1\n=======\na 2\n>>>>>>> theirs\n");
    EXPECT_EQ(report,
              "<stdin>:35:1: error: unresolved merge conflict, lines 35 to 39; 'a' in line 36 is skipped, "
              "too [merge-conflict]\n"
              "<<<<<<< ours\n^~~~~~~~~~~~\n");
}

TEST(bkdoc_messages, a_byte_order_mark_says_how_to_get_rid_of_it) {
    EXPECT_TRUE(contains(report_of("a 1\n\xEF\xBB\xBF"
                                   "b 2\n"),
                         "save the file without a byte order mark [byte-order-mark]\n"));
}

TEST(bkdoc_messages, options_and_verbs_that_are_none_are_named) {
    EXPECT_EQ(refusal_of({"--verison"}), "unknown option '--verison'; did you mean '--version'?");
    EXPECT_EQ(refusal_of({"check", "--hlep"}), "unknown option '--hlep'; did you mean '--help'?");
    EXPECT_TRUE(refusal_of({"check", "a.bkd", "-q"}).starts_with("unknown option '-q'"));
    EXPECT_EQ(refusal_of({"chek"}), "unknown verb 'chek'; did you mean 'check'?");
}

TEST(bkdoc_messages, values_of_options_say_what_is_needed) {
    EXPECT_EQ(refusal_of({"tree", "--depth", "x", "a.bkd"}), "--depth needs a whole number, not 'x'");
    EXPECT_EQ(refusal_of({"tree", "--depth", "1", "--depth", "2", "a.bkd"}), "--depth is given twice");
    EXPECT_TRUE(
        refusal_of({"convert", "a", "b"}).starts_with("--to needs a form: text, binary, cipher, archive"));
    EXPECT_TRUE(refusal_of({"convert", "a", "b", "--to"})
                    .starts_with("--to needs a form: text, binary, cipher, archive"));
}

TEST(bkdoc_messages, a_code_that_no_problem_has_is_not_allowed) {
    EXPECT_EQ(refusal_of({"check", "--allow", "comment-join-line", "a.bkd"}),
              "--allow: unknown code 'comment-join-line'; did you mean 'comment-joins-line'?");
    EXPECT_EQ(refusal_of({"check", "--allow", "x", "a.bkd"}),
              "--allow: unknown code 'x'; each problem shows its code in brackets after the message");
    EXPECT_EQ(run_bkdoc({"check", "--allow", "comment-joins-line", "-"}, "a 1\n").code, 0);
}

TEST(bkdoc_messages, what_is_cut_off_says_how_much_is_there) {
    const ScratchFolder folder;
    write_in_form(folder, "binary", "a 1 b 2");
    const std::string bytes = folder.read("binary.bkd");
    const std::string cut = folder.write("cut.bin", bytes.substr(0, bytes.size() - 9));
    EXPECT_TRUE(contains(run_bkdoc({"check", cut}).out,
                         "cut off: " + std::to_string(bytes.size()) + " bytes announced, " +
                             std::to_string(bytes.size() - 9) + " present [cut-off]\n"));
}

TEST(bkdoc_messages, a_wrong_key_may_be_a_damaged_file) {
    const ScratchFolder folder;
    const std::string file = write_in_form(folder, "cipher", "a 1");
    EXPECT_EQ(refusal_of({"tree", "--key", "portal", file}), file + ": wrong key, or a damaged file");
}

TEST(bkdoc_messages, dump_says_what_it_reads) {
    const ScratchFolder folder;
    const std::string file = folder.write("a.bkd", "a 1\n");
    EXPECT_EQ(refusal_of({"dump", file}), file + " is text; dump reads binary, enciphered and archive files");
}

TEST(bkdoc_messages, an_include_that_is_not_found_says_where_it_was_looked_for) {
    const ScratchFolder folder;
    const std::string file = folder.write("a.bkd", "#include \"materials.bkd\"\n");
    const BkdocRun run = run_bkdoc({"check", "--no-config", "-I", folder.path("library"), file});
    EXPECT_TRUE(contains(run.out, "'materials.bkd' not found; tried ")) << run.out;
    EXPECT_TRUE(contains(run.out, folder.path("library"))) << run.out;
    EXPECT_TRUE(contains(run.out, "; -I adds a folder [include-not-found]\n")) << run.out;
}

#if !defined(_WIN32)
TEST(bkdoc_messages, the_reason_of_the_system_is_told) {
    const ScratchFolder folder;
    std::filesystem::create_symlink(folder.path("loop"), folder.path("loop"));
    EXPECT_EQ(refusal_of({"check", folder.path("loop")}),
              folder.path("loop") + ": too many levels of symbolic links");
}
#endif

} // namespace
