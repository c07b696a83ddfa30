#include "tests/support/loaded_document.h"

#include <gtest/gtest.h>

using bk_parser::Form;
using bk_parser::LoadOptions;
using bk_parser::load;
using bk_parser::LoadResult;

TEST(document_load, a_text_without_problems_is_ok) {
    const ScratchFolder folder;
    folder.write("main.bkd", "#Brellwick_Serial_Version 1.2\nlight {\n    power 60.0\n}\n");
    const LoadResult result = load(folder.path("main.bkd"));
    EXPECT_TRUE(result.ok());
    EXPECT_FALSE(result.cancelled);
    EXPECT_EQ(told(result), Lines{});
    EXPECT_EQ(tree_of(result), " light { power 60.0 }");
    EXPECT_EQ(result.document.form(), Form::text);
    EXPECT_EQ(result.document.path(), std::filesystem::path(folder.path("main.bkd")));
}

TEST(document_load, a_text_in_memory_is_parsed) {
    const LoadResult result = bk_parser::parse("a 1 b { c \"x\" }");
    EXPECT_TRUE(result.ok());
    EXPECT_EQ(tree_of(result), " a 1 b { c \"x\" }");
    EXPECT_TRUE(result.document.path().empty());
}

TEST(document_load, an_empty_file_is_an_empty_document_without_problems) {
    const ScratchFolder folder;
    folder.write("main.bkd", "");
    EXPECT_TRUE(load(folder.path("main.bkd")).ok());
    EXPECT_TRUE(bk_parser::parse("").ok());
}
