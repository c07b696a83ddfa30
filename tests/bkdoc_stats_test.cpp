#include "tests/support/bkdoc_forms.h"

#include <gtest/gtest.h>

namespace {

constexpr std::string_view scene = "name \"quay\"\n"
                                   "light { power 60.0 on yes }\n"
                                   "light { power 40.5 mesh { points 1 2 3 } }\n";

TEST(bkdoc_stats, paths_have_what_is_below_them_the_largest_first) {
    const BkdocRun run = run_bkdoc({"stats", "-"}, scene);
    EXPECT_EQ(run.code, 0);
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(run.out, "<stdin>: 83 bytes of text, 8 entries, 10 values\n"
                       "         bytes   share       entries        values  path\n"
                       "            71   85.5%             7             9  light\n"
                       "            22   26.5%             2             4  light/mesh\n"
                       "            22   26.5%             2             2  light/power\n"
                       "            13   15.7%             1             3  light/mesh/points\n"
                       "            12   14.5%             1             1  name\n"
                       "             7    8.4%             1             1  light/on\n");
}

TEST(bkdoc_stats, names_have_their_own_bytes) {
    const BkdocRun run = run_bkdoc({"stats", "--by", "name", "--top", "2", "-"}, scene);
    EXPECT_EQ(run.out, "<stdin>: 83 bytes of text, 8 entries, 10 values\n"
                       "         bytes   share       entries        values  name\n"
                       "            22   26.5%             2             2  power\n"
                       "            20   24.1%             2             2  light\n"
                       "and 4 more rows; --top 0 shows all\n");
}

TEST(bkdoc_stats, types_have_the_bytes_of_their_values) {
    const BkdocRun run = run_bkdoc({"stats", "--by", "type", "--top", "0", "-"}, scene);
    EXPECT_EQ(run.out, "<stdin>: 83 bytes of text, 8 entries, 10 values\n"
                       "         bytes   share       entries        values  type\n"
                       "            44   53.0%             8             0  (names)\n"
                       "            12   14.5%             3             3  group\n"
                       "            10   12.0%             2             2  double\n"
                       "             7    8.4%             1             1  string\n"
                       "             6    7.2%             1             3  int\n"
                       "             4    4.8%             1             1  bool\n");
}

TEST(bkdoc_stats, bytes_are_those_of_the_text_that_is_written_on_one_line) {
    const std::string text = "#unit \"m\\n\" lamp<light> 1 p[3] 1 2 3 colour(1, 0.5) reset() e <empty> g { } "
                             "d 0x01FF00010000 w { a 1 } { b 2 }";
    const std::string compact = run_bkdoc({"cat", "--compact", "-"}, text).out;
    const std::size_t bytes = compact.size() - std::string("#Brellwick_Serial_Version 1.2\n\n").size();
    for (const char* by : {"path", "name", "type"}) {
        const BkdocRun run = run_bkdoc({"stats", "--by", by, "-"}, text);
        EXPECT_TRUE(run.out.starts_with("<stdin>: " + std::to_string(bytes) + " bytes of text, ")) << run.out;
    }
}

TEST(bkdoc_stats, several_documents_of_any_form_are_summed_up) {
    const ScratchFolder folder;
    const std::string text = folder.write("a.bkd", "a 1\n");
    const std::string archive = write_in_form(folder, "archive", "a 2");
    const BkdocRun run = run_bkdoc({"stats", text, archive});
    EXPECT_EQ(run.code, 0);
    EXPECT_EQ(run.out, "2 documents: 8 bytes of text, 2 entries, 2 values\n"
                       "         bytes   share       entries        values  path\n"
                       "             8  100.0%             2             2  a\n");
}

TEST(bkdoc_stats, json_has_the_same_numbers) {
    const BkdocRun run = run_bkdoc({"stats", "--json", "--top", "1", "-"}, "a 1 b \"x\"\n");
    EXPECT_EQ(run.code, 0);
    EXPECT_EQ(run.out, "{\n  \"files\": [\n    \"<stdin>\"\n  ],\n  \"bytes\": 10,\n  \"entries\": 2,\n"
                       "  \"values\": 2,\n  \"by\": \"path\",\n  \"rows\": [\n    {\n      \"name\": \"b\",\n"
                       "      \"bytes\": 6,\n      \"entries\": 1,\n      \"values\": 1,\n"
                       "      \"share\": 60.0\n    }\n  ],\n  \"left_out\": 1\n}\n");
}

TEST(bkdoc_stats, an_empty_document_has_no_rows) {
    const BkdocRun run = run_bkdoc({"stats", "-"}, "");
    EXPECT_EQ(run.code, 0);
    EXPECT_EQ(run.out, "<stdin>: 0 bytes of text, 0 entries, 0 values\n");
}

TEST(bkdoc_stats, what_cannot_be_read_is_told) {
    const ScratchFolder folder;
    const BkdocRun run = run_bkdoc({"stats", folder.path("gone.bkd")});
    EXPECT_EQ(run.code, 2);
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.err, "bkdoc: " + folder.path("gone.bkd") + ": no such file\n");
}

} // namespace
