#include "tests/support/bkdoc_run.h"

#include <gtest/gtest.h>

namespace {

BkdocRun compare(std::string_view first, std::string_view second) {
    const ScratchFolder folder;
    folder.write("a.bkd", first);
    folder.write("b.bkd", second);
    BkdocRun run = run_bkdoc({"same", folder.path("a.bkd"), folder.path("b.bkd")});
    for (std::size_t i = run.out.find(folder.path()); i != std::string::npos;
         i = run.out.find(folder.path())) {
        run.out.erase(i, folder.path().size() + 1);
    }
    return run;
}

TEST(bkdoc_same, layout_and_spelling_do_not_count) {
    const BkdocRun run = compare("a = 1.50, 2\nb { c \"x\" }\n", "a 1.5 2 // the same\nb\n{\nc \"x\"\n}\n");
    EXPECT_EQ(run.code, 0);
    EXPECT_EQ(run.out, "a.bkd and b.bkd hold the same tree\n");
    EXPECT_EQ(run.err, "");
}

TEST(bkdoc_same, the_first_different_value_is_told_with_its_path) {
    const BkdocRun run = compare("scene { light { power 60 } light { power 75 1.0 } }\n",
                                 "scene { light { power 60 } light { power 75 2.0 } }\n");
    EXPECT_EQ(run.code, 1);
    EXPECT_EQ(run.out, "a.bkd and b.bkd differ at scene/light[1]/power, value 2:\n"
                       "  a.bkd: double 1.0\n"
                       "  b.bkd: double 2.0\n");
}

TEST(bkdoc_same, a_difference_of_type_is_one) {
    EXPECT_EQ(compare("a 1 ", "a 1.0 ").out, "a.bkd and b.bkd differ at a, value 1:\n"
                                             "  a.bkd: int 1\n"
                                             "  b.bkd: double 1.0\n");
}

TEST(bkdoc_same, a_value_too_many_is_told) {
    EXPECT_EQ(compare("a 1 2 ", "a 1 ").out, "a.bkd and b.bkd differ at a, value 2:\n"
                                             "  a.bkd: int 2\n"
                                             "  b.bkd: nothing\n");
}

TEST(bkdoc_same, an_entry_too_many_is_told_at_its_group) {
    EXPECT_EQ(compare("a { b 1 } ", "a { b 1 c 2 } ").out, "a.bkd and b.bkd differ at a, entry 2:\n"
                                                           "  a.bkd: nothing\n"
                                                           "  b.bkd: c\n");
    EXPECT_EQ(compare("a 1 ", "").out, "a.bkd and b.bkd differ at the root, entry 1:\n"
                                       "  a.bkd: a\n"
                                       "  b.bkd: nothing\n");
}

TEST(bkdoc_same, names_templates_array_counts_and_kinds_count) {
    EXPECT_NE(compare("a 1 ", "b 1 ").out.find("differ at the root, entry 1:\n"), std::string::npos);
    EXPECT_NE(compare("a<x> 1 ", "a<y> 1 ").out.find("differ at a, template:\n  a.bkd: <x>\n"),
              std::string::npos);
    EXPECT_NE(
        compare("a[2] 1 ", "a 1 ").out.find("differ at a, array count:\n  a.bkd: [2]\n  b.bkd: no array\n"),
        std::string::npos);
    EXPECT_NE(compare("a(1) ", "a 1 ")
                  .out.find("differ at a, kind:\n  a.bkd: function call\n  b.bkd: ordinary entry\n"),
              std::string::npos);
}

TEST(bkdoc_same, strings_and_binary_data_are_compared_whole) {
    EXPECT_EQ(compare("a \"x\" ", "a \"x\" ").code, 0);
    EXPECT_EQ(compare("a \"x\" ", "a \"X\" ").code, 1);
    // The checksum is not part of the content.
    EXPECT_EQ(compare("a 0x01FF00010000 ", "a 0x01FF00000000 ").code, 0);
    EXPECT_EQ(compare("a 0x01FF00010000 ", "a 0x01FE00010000 ").code, 1);
}

TEST(bkdoc_same, a_difference_behind_a_group_is_found) {
    EXPECT_EQ(compare("a { b 1 } c 2 ", "a { b 1 } c 3 ").out, "a.bkd and b.bkd differ at c, value 1:\n"
                                                               "  a.bkd: int 2\n"
                                                               "  b.bkd: int 3\n");
}

TEST(bkdoc_same, a_document_that_cannot_be_read_is_neither) {
    const BkdocRun run = compare("a 1 ", "#include \"gone.bkd\"\n");
    EXPECT_EQ(run.code, 2);
    EXPECT_EQ(run.out, "");
    EXPECT_NE(run.err.find("'gone.bkd' not found; "), std::string::npos);
}

TEST(bkdoc_same, one_side_may_be_standard_input) {
    const ScratchFolder folder;
    const std::string file = folder.write("a.bkd", "a 1\n");
    EXPECT_EQ(run_bkdoc({"same", file, "-"}, "a 1\n").code, 0);
    EXPECT_EQ(run_bkdoc({"same", "-", file}, "a 2\n").code, 1);
}

} // namespace
