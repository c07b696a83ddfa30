#include "tests/support/bkdoc_run.h"

#include "core/core_string.h"
#include "parser/parser_file.h"

#include <gtest/gtest.h>

namespace {

TEST(bkdoc_cat, the_document_is_written_as_the_library_writes_it) {
    const ScratchFolder folder;
    const std::string document = folder.write(
        "a.bkd", "#Brellwick_Serial_Version 1.2\na 1.50 \"x\\ny\"\nb { c yes } f( 1,2 ) e <empty>\n");
    ParserFile file{folder.core_path("a.bkd")};
    ASSERT_TRUE(file.read(CoreString(), CoreString(), nullptr));
    ASSERT_TRUE(file.write(ParserFile::MODE_TEXT, folder.core_path("b.bkd"), CoreString()));

    const BkdocRun run = run_bkdoc({"cat", document});
    EXPECT_EQ(run.code, 0);
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(run.out, with_plain_line_ends(folder.read("b.bkd")));
    EXPECT_EQ(with_plain_line_ends(run.out),
              "#Brellwick_Serial_Version 1.2\n\na 1.50 \"x\\ny\"\nb {\n    c yes\n}\nf(1, 2)\ne <empty>");
}

TEST(bkdoc_cat, compact_puts_all_entries_on_one_line) {
    const BkdocRun run = run_bkdoc({"cat", "--compact", "-"}, "a 1\nb { c 2 }\n");
    EXPECT_EQ(run.out, "#Brellwick_Serial_Version 1.2\n a 1 b { c 2 }\n");
}

TEST(bkdoc_cat, what_it_writes_reads_back_as_the_same_tree) {
    const ScratchFolder folder;
    const std::string document =
        folder.write("a.bkd", "a 'x' 1\nb \"it's \\\"so\\\"\\t\" { c 1e-05 }\nf()\n#k yes\n");
    const std::string pretty = folder.write("pretty.bkd", run_bkdoc({"cat", document}).out);
    const std::string compact = folder.write("compact.bkd", run_bkdoc({"cat", "--compact", document}).out);
    EXPECT_EQ(run_bkdoc({"same", document, pretty}).code, 0);
    EXPECT_EQ(run_bkdoc({"same", document, compact}).code, 0);
}

TEST(bkdoc_cat, faults_go_to_the_error_stream_and_the_rest_is_written) {
    const BkdocRun run = run_bkdoc({"cat", "-"}, "a @ 1\n");
    EXPECT_EQ(run.code, 1);
    EXPECT_EQ(with_plain_line_ends(run.out), "#Brellwick_Serial_Version 1.2\n\na 1");
    EXPECT_EQ(run.err, "<stdin>:1:3: error: unexpected '@' [unexpected-word]\na @ 1\n  ^\n");
}

TEST(bkdoc_cat, a_document_with_a_failed_include_is_not_written) {
    const BkdocRun run = run_bkdoc({"cat", "-"}, "a 1\n#include \"gone.bkd\"\n");
    EXPECT_EQ(run.code, 2);
    EXPECT_EQ(run.out, "");
    EXPECT_NE(run.err.find("<stdin>:2:1: error: 'gone.bkd' not found; tried gone.bkd; -I adds a folder "
                           "[include-not-found]\n"),
              std::string::npos);
}

} // namespace
