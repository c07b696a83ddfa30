#include "tests/support/bkdoc_run.h"

#include <gtest/gtest.h>

namespace {

TEST(bkdoc_info, a_document_is_counted) {
    const ScratchFolder folder;
    const std::string top = folder.write("top.bkd", "#Brellwick_Serial_Version 1.2\n"
                                                    "#units \"metre\"\n"
                                                    "camera<wide> {\n"
                                                    "    position[3] 1.0 2.0 3\n"
                                                    "    look_at(0, 1)\n"
                                                    "    #include \"part.bkd\"\n"
                                                    "}\n");
    const std::string part = folder.write("library/part.bkd", "// a part\nmask 0x01FF00010000\non yes");
    const BkdocRun run = run_bkdoc({"info", "-I", folder.path("library"), top});
    EXPECT_EQ(run.code, 0);
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(run.out, "document      " + top + "\n" +
                           "form          text\n"
                           "version       1.2\n"
                           "files         2\n"
                           "size          166 bytes, 107 bytes after includes and comments\n"
                           "lines         10\n"
                           "entries       6  (4 ordinary, 1 keyword, 1 function call)\n"
                           "templates     1\n"
                           "arrays        1\n"
                           "values        9  (1 group, 1 bool, 3 ints, 2 doubles, 1 string, 1 data)\n"
                           "depth         2\n"
                           "problems      0\n"
                           "dependencies  1\n"
                           "  " +
                           part + "  found in the search folder " + folder.path("library") + "\n");
}

TEST(bkdoc_info, a_file_that_is_included_twice_is_one_dependency) {
    const ScratchFolder folder;
    const std::string part = folder.write("part.bkd", "a 1\n");
    const BkdocRun run = run_bkdoc({"info", "-"}, "#include \"" + part + "\"\n#include \"" + part + "\"\n");
    EXPECT_EQ(run.code, 0);
    EXPECT_TRUE(run.out.ends_with("\ndependencies  1\n  " + part + "  found as named\n")) << run.out;
    EXPECT_NE(run.out.find("\nfiles         2\n"), std::string::npos) << run.out;
}

TEST(bkdoc_info, faults_are_counted_and_told_on_the_error_stream) {
    const BkdocRun run = run_bkdoc({"info", "-"}, "a @ 1\n");
    EXPECT_EQ(run.code, 1);
    EXPECT_NE(run.out.find("\nproblems      1\n"), std::string::npos);
    EXPECT_NE(run.err.find("<stdin>:1:3: error: "), std::string::npos);
}

TEST(bkdoc_info, a_document_without_a_version_line_has_version_1) {
    EXPECT_NE(run_bkdoc({"info", "-"}, "a 1\n").out.find("\nversion       1.0\n"), std::string::npos);
}

} // namespace
