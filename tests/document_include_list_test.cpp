#include "tests/support/loaded_document.h"

#include <gtest/gtest.h>

using bk_parser::Document;
using bk_parser::Include;
using bk_parser::load;
using bk_parser::LoadOptions;
using bk_parser::LoadResult;
using bk_parser::parse;

namespace {

class DocumentIncludeList : public testing::Test {
protected:
    /// Each include as "main.bkd:1:2 part.bkd -> part.bkd". If it was not read, " [code]" follows its name
    /// instead.
    static Lines listed(const Document& document) {
        Lines lines;
        for (const Include& include : document.includes()) {
            std::string line = include.file.filename().string() + ":" + std::to_string(include.line) + ":" +
                               std::to_string(include.column) + " " + include.name;
            line += include.problem.empty() ? " -> " + include.path.filename().string()
                                            : " [" + include.problem + "]";
            lines.push_back(line);
        }
        return lines;
    }

    const ScratchFolder folder_;
};

using document_include_list = DocumentIncludeList;

} // namespace

TEST_F(document_include_list, has_every_directive_with_its_place_in_the_order_of_reading) {
    folder_.write("part.bkd", "a 1\r\n#include \"deep.bkd\"");
    folder_.write("deep.bkd", "b 2");
    const LoadResult result =
        load(folder_.write("main.bkd", "\n\xC3\xA9 1 #include \"part.bkd\"\rx 1\n  #include \"deep.bkd\"\n"));
    EXPECT_EQ(listed(result.document),
              (Lines{"main.bkd:2:5 part.bkd -> part.bkd", "part.bkd:2:1 deep.bkd -> deep.bkd",
                     "main.bkd:4:3 deep.bkd -> deep.bkd"}));
    const Include& first = result.document.includes().front();
    EXPECT_EQ(first.offset, 6u);
    EXPECT_EQ(first.length, std::string_view("#include \"part.bkd\"").size());
    EXPECT_EQ(first.found, std::filesystem::path(folder_.path("part.bkd")));
}

TEST_F(document_include_list, says_why_a_file_was_left_out_and_where_it_was_looked_for) {
    const std::string other = folder_.make_folder("other");
    const std::string main =
        folder_.write("main.bkd", "#include \"gone.bkd\"\n#include \"main.bkd\"\n#include \"other\"\n");
    LoadOptions options;
    options.search = {other};
    const LoadResult result = load(main, options);
    EXPECT_EQ(listed(result.document),
              (Lines{"main.bkd:1:1 gone.bkd [include-not-found]", "main.bkd:2:1 main.bkd [include-circle]",
                     "main.bkd:3:1 other [include-not-found]"}));
    const std::vector<std::filesystem::path> tried = {folder_.path("gone.bkd"), other + "/gone.bkd",
                                                      "gone.bkd"};
    EXPECT_EQ(result.document.includes()[0].tried, tried);
    EXPECT_TRUE(result.document.includes()[0].found.empty());
    EXPECT_EQ(result.document.includes()[1].found, std::filesystem::path(main));
}

TEST_F(document_include_list, says_where_a_file_was_looked_for_before_it_was_found) {
    folder_.write("library/part.bkd", "a 1");
    LoadOptions options;
    options.search = {folder_.make_folder("other"), folder_.path("library")};
    const LoadResult result = load(folder_.write("main.bkd", "#include \"part.bkd\"\n"), options);
    const std::vector<std::filesystem::path> tried = {folder_.path("part.bkd"),
                                                      folder_.path("other/part.bkd")};
    ASSERT_EQ(result.document.includes().size(), 1u);
    EXPECT_EQ(result.document.includes()[0].tried, tried);
}

TEST_F(document_include_list, names_the_directives_of_a_file_once_however_often_it_is_included) {
    folder_.write("part.bkd", "#include \"deep.bkd\"\n");
    folder_.write("deep.bkd", "#include \"gone.bkd\"\n");
    const LoadResult result =
        load(folder_.write("main.bkd", "#include \"part.bkd\"\n#include \"part.bkd\"\n"));
    EXPECT_EQ(listed(result.document),
              (Lines{"main.bkd:1:1 part.bkd -> part.bkd", "part.bkd:1:1 deep.bkd -> deep.bkd",
                     "deep.bkd:1:1 gone.bkd [include-not-found]", "main.bkd:2:1 part.bkd -> part.bkd"}));
    EXPECT_EQ(result.document.files().size(), 3u);
}

TEST_F(document_include_list, is_all_that_is_taken_of_includes_that_are_not_followed) {
    folder_.write("part.bkd", "a 1");
    LoadOptions options;
    options.follow_includes = false;
    const LoadResult result =
        load(folder_.write("main.bkd", "#include \"part.bkd\"\nb 2\n#include \"gone.bkd\"\n"), options);
    EXPECT_EQ(told(result), Lines{});
    EXPECT_EQ(tree_of(result), " b 2");
    ASSERT_EQ(result.document.includes().size(), 2u);
    EXPECT_EQ(result.document.includes()[1].name, "gone.bkd");
    EXPECT_EQ(result.document.includes()[1].line, 3u);
    EXPECT_TRUE(result.document.includes()[0].path.empty());
    EXPECT_TRUE(result.document.dependencies().empty());
}

TEST_F(document_include_list, counts_no_byte_order_mark_at_the_beginning) {
    const LoadResult result = parse("\xEF\xBB\xBF#include \"gone.bkd\"\n");
    EXPECT_EQ(listed(result.document), (Lines{":1:1 gone.bkd [include-not-found]"}));
    ASSERT_EQ(result.problems.size(), 1u);
    EXPECT_EQ(result.problems[0].column, 1u);
    EXPECT_EQ(result.problems[0].source_line, "#include \"gone.bkd\"");
}

TEST_F(document_include_list, of_a_text_in_memory_has_no_file) {
    const LoadResult result = parse("a 1 #include \"gone.bkd\"\n");
    EXPECT_EQ(listed(result.document), (Lines{":1:5 gone.bkd [include-not-found]"}));
}

TEST_F(document_include_list, comes_with_the_sizes_of_the_files) {
    const std::string part = folder_.write("part.bkd", "// a\r\nb 2\rc 3\n\nd 4");
    const std::string main = folder_.write("main.bkd", "#include \"part.bkd\"\nx 1 // y\n");
    const LoadResult result = load(main);
    const auto& files = result.document.files();
    ASSERT_EQ(files.size(), 2u);
    EXPECT_EQ(files[0].file, std::filesystem::path(main));
    EXPECT_EQ(files[0].line_count, 2u);
    EXPECT_EQ(files[0].stored_size, 29u);
    EXPECT_EQ(files[0].text_size, 29u);
    EXPECT_EQ(files[1].path, std::filesystem::path(folder_.full_path("part.bkd")));
    EXPECT_EQ(files[1].line_count, 5u);
    EXPECT_EQ(files[1].text_size, 18u);
    EXPECT_EQ(result.document.version(), 1.0);
    EXPECT_EQ(parse("#Brellwick_Serial_Version 1.1\na 1").document.version(), 1.1);
    EXPECT_EQ(parse("a 1 // 12345\nb 2").document.expanded_size(), std::string_view("a 1 b 2").size());
}
