#include "parser/parser_file.h"
#include "tests/support/plain_text.h"

#include <gtest/gtest.h>

TEST(file_construction, the_default_serial_version_is_1_2) {
    EXPECT_EQ(default_parser_serial_version.get_value(), 1.2);
}

TEST(file_construction, the_numbers_of_the_modes_are_fixed) {
    EXPECT_EQ(static_cast<unsigned int>(ParserFile::MODE_TEXT), 0u);
    EXPECT_EQ(static_cast<unsigned int>(ParserFile::MODE_BINARY), 1u);
}

TEST(file_construction, a_file_from_a_name_has_an_empty_root_named_root) {
    const ParserFile file(CoreString("some/where.bkd"));
    EXPECT_EQ(plain(file.get_filename()), "some/where.bkd");
    EXPECT_EQ(plain(file.get_root().get_name()), "root");
    EXPECT_EQ(file.get_root().get_entries().get_count(), 0u);
    EXPECT_EQ(file.get_root().get_source_entry(), nullptr);
    EXPECT_EQ(file.get_serial_version().get_value(), 1.2);
    EXPECT_FALSE(file.is_encrypted());
    EXPECT_EQ(file.get_search_paths().get_count(), 0u);
    EXPECT_EQ(file.get_dependencies().get_count(), 0u);
}

TEST(file_construction, a_file_from_a_name_does_not_read) {
    const ParserFile file(CoreString(BK_PARSER_SOURCE_DIR "/examples/lamp.bkd"));
    EXPECT_EQ(file.get_root().get_entries().get_count(), 0u);
}

TEST(file_construction, a_file_from_a_group_has_that_very_group_as_its_root) {
    auto* root = new ParserGroup("mine");
    root->add_entry("a", 0, 0)->add_int(1);
    const ParserFile file(*root);
    EXPECT_EQ(&file.get_root(), root);
    EXPECT_TRUE(file.get_filename().is_empty());
    EXPECT_EQ(file.get_serial_version().get_value(), 1.2);
    EXPECT_FALSE(file.is_encrypted());
    EXPECT_EQ(file.get_search_paths().get_count(), 0u);
    EXPECT_EQ(file.get_dependencies().get_count(), 0u);
}

TEST(file_construction, a_change_of_the_default_version_is_taken_by_files_made_later) {
    default_parser_serial_version = CoreVersion(1.5);
    const ParserFile file(CoreString("x"));
    default_parser_serial_version = CoreVersion(1.2);
    EXPECT_EQ(file.get_serial_version().get_value(), 1.5);
}

TEST(file_construction, a_new_filename_is_stored_as_given) {
    ParserFile file(CoreString("one"));
    file.set_filename("./two/../three.bkd");
    EXPECT_EQ(plain(file.get_filename()), "./two/../three.bkd");
    file.set_filename(CoreString());
    EXPECT_TRUE(file.get_filename().is_empty());
}

TEST(file_construction, a_filename_may_be_set_from_the_file_s_own) {
    ParserFile file(CoreString("a/path/that/is/long/enough/for/a/block"));
    file.set_filename(file.get_filename());
    EXPECT_EQ(plain(file.get_filename()), "a/path/that/is/long/enough/for/a/block");
}

TEST(file_construction, search_paths_are_replaced_by_a_copy) {
    ParserFile file(CoreString("x"));
    CoreVector<CoreString> paths = {"one", "two"};
    file.set_search_paths(paths);
    paths[0] = "changed";
    ASSERT_EQ(file.get_search_paths().get_count(), 2u);
    EXPECT_EQ(plain(file.get_search_paths()[0]), "one");
    EXPECT_EQ(plain(file.get_search_paths()[1]), "two");
    file.set_search_paths({"three"});
    ASSERT_EQ(file.get_search_paths().get_count(), 1u);
    EXPECT_EQ(plain(file.get_search_paths()[0]), "three");
}

TEST(file_construction, clear_empties_the_root_and_keeps_everything_else) {
    ParserFile file(CoreString("x"));
    file.set_search_paths({"one"});
    file.get_root().add_entry("a", 0, 0);
    ParserGroup* root = &file.get_root();
    file.clear();
    EXPECT_EQ(&file.get_root(), root);
    EXPECT_EQ(root->get_entries().get_count(), 0u);
    EXPECT_EQ(plain(root->get_name()), "root");
    EXPECT_EQ(plain(file.get_filename()), "x");
    EXPECT_EQ(file.get_search_paths().get_count(), 1u);
    EXPECT_EQ(file.get_serial_version().get_value(), 1.2);
}

TEST(file_construction, the_text_of_a_file_has_no_version_line_and_is_appended) {
    ParserFile file(CoreString("x"));
    file.get_root().add_entry("a", 0, 0)->add_int(1);
    CoreString text("before");
    file.get_text(text);
    EXPECT_EQ(plain(text), "before\na 1");
}
