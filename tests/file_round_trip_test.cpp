#include "tests/support/document_folder.h"
#include "tests/support/tree_equal.h"

#include <gtest/gtest.h>

namespace {

/// The example project, read with its includes.
class Project : public testing::Test {
protected:
    Project() : file(core(folder_of_project() + "/harbour.bkd")) {
        file.set_search_paths({core(folder_of_project() + "/library"), core(folder_of_project() + "/shots")});
        result = file.read("", "", nullptr);
    }

    static std::string folder_of_project() { return BK_PARSER_SOURCE_DIR "/examples/project"; }

    RecordingLog log;
    const DocumentFolder folder;
    ParserFile file;
    bool result = false;
};

} // namespace

using file_round_trip = Project;

TEST_F(file_round_trip, a_project_of_many_files_is_read_without_faults) {
    EXPECT_TRUE(result);
    EXPECT_TRUE(log.is_empty());
    EXPECT_GT(file.get_root().get_entries().get_count(), 0u);
    EXPECT_GT(file.get_dependencies().get_count(), 5u);
    EXPECT_EQ(file.get_serial_version().get_value(), 1.2);
}

TEST_F(file_round_trip, a_document_reads_back_from_the_file_that_it_was_written_to) {
    ASSERT_TRUE(file.write(ParserFile::MODE_TEXT, folder.core_path("out.bkd"), ""));
    ParserFile again(folder.core_path("out.bkd"));
    ASSERT_TRUE(again.read("", "", nullptr));
    EXPECT_EQ(tree_difference(file.get_root(), again.get_root()), "");
    EXPECT_EQ(again.get_dependencies().get_count(), 0u);
    EXPECT_TRUE(log.is_empty());
}

TEST_F(file_round_trip, a_document_written_twice_is_the_same_file) {
    ASSERT_TRUE(file.write(ParserFile::MODE_TEXT, folder.core_path("one.bkd"), ""));
    ParserFile again(folder.core_path("one.bkd"));
    ASSERT_TRUE(again.read("", "", nullptr));
    ASSERT_TRUE(again.write(ParserFile::MODE_TEXT, folder.core_path("two.bkd"), ""));
    EXPECT_FALSE(folder.read("one.bkd").empty());
    EXPECT_EQ(folder.read("one.bkd"), folder.read("two.bkd"));
}
