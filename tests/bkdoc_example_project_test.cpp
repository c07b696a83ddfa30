#include "tests/support/bkdoc_run.h"

#include <gtest/gtest.h>

namespace {

const std::string root = "project/harbour.bkd";

TEST(example_project, it_reads_without_a_fault) {
    const BkdocRun run = run_bkdoc(with_project_folders({"check", example_path(root)}));
    EXPECT_EQ(run.code, 0);
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.err, "");
}

TEST(example_project, it_survives_writing_and_reading) {
    const ScratchFolder folder;
    const BkdocRun first = run_bkdoc(with_project_folders({"cat", example_path(root)}));
    ASSERT_EQ(first.code, 0);
    const std::string written = folder.write("written.bkd", first.out);
    EXPECT_EQ(run_bkdoc(with_project_folders({"same", example_path(root), written})).code, 0);
    EXPECT_EQ(run_bkdoc({"cat", written}).out, first.out);
}

TEST(example_project, it_survives_being_written_on_one_line) {
    const ScratchFolder folder;
    const BkdocRun compact = run_bkdoc(with_project_folders({"cat", "--compact", example_path(root)}));
    const std::string written = folder.write("written.bkd", compact.out);
    EXPECT_EQ(run_bkdoc(with_project_folders({"same", example_path(root), written})).code, 0);
}

TEST(example_project, every_file_of_its_folders_is_a_dependency) {
    const std::string out = run_bkdoc(with_project_folders({"info", example_path(root)})).out;
    std::size_t count = 0;
    for (const char* name : {"project/library", "project/shots"}) {
        for (const auto& item : std::filesystem::directory_iterator(example_path(name))) {
            const std::string path = example_path(name) + "/" + item.path().filename().string();
            EXPECT_NE(out.find("\n  " + path + "  "), std::string::npos) << path;
            ++count;
        }
    }
    EXPECT_EQ(out.find("found as named"), std::string::npos) << out;
    EXPECT_NE(out.find("\ndependencies  " + std::to_string(count) + "\n"), std::string::npos) << out;
}

TEST(example_project, it_uses_every_kind_of_entry_and_value_that_text_can_hold) {
    const std::string out = run_bkdoc(with_project_folders({"info", example_path(root)})).out;
    for (const char* word : {" ordinary", " keywords", " function calls", " groups", " bools", " ints",
                             " doubles", " strings", " data"}) {
        EXPECT_NE(out.find(word), std::string::npos) << word;
    }
    EXPECT_EQ(out.find("\ntemplates     0\n"), std::string::npos);
    EXPECT_EQ(out.find("\narrays        0\n"), std::string::npos);
}

} // namespace
