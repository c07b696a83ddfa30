#include "tests/support/told_problems.h"

namespace {

const std::string before_comment = ": put a blank before the comment";
const std::string around_directive = ": put a blank or a line end before and after the directive";

const ToldRow rows[] = {
    {"a_comment_joins_the_next_line",
     "power 60.0// watts\nb 2\n",
     {{"comment-joins-line", false, 2, 11, 2, "'b' joins '60.0'" + before_comment}}},
    {"a_comment_joins_a_name",
     "a on// x\ntrue 1\n",
     {{"comment-joins-line", true, 2, 5, 2, "'true' joins 'on'" + before_comment}}},
    {"a_comment_joins_a_boolean",
     "a yes//\nb 2\n",
     {{"comment-joins-line", true, 2, 6, 2, "'b' joins 'yes'" + before_comment}}},
    {"a_comment_that_joins_a_name_without_value_is_a_mistake_of_its_own",
     "a\nb//\nc 2\n",
     {{"no-value", true, 2, 1, 1, "'a' has no value, and 'bc' is skipped"},
      {"comment-joins-line", true, 3, 2, 2, "'c' joins 'b'" + before_comment}}},
    {"a_comment_that_loses_a_value_is_an_error",
     "a <empty>//\nb 2\n",
     {{"comment-joins-line", true, 2, 10, 2, "'b' joins '<empty>'" + before_comment}}},
    {"a_comment_that_loses_a_name_is_an_error",
     "a 1\n%//\nb 2\n",
     {{"comment-joins-line", true, 3, 2, 2, "'b' joins '%'" + before_comment}}},
    {"a_version_line_that_loses_a_name_is_an_error",
     "a 1\n\\#Brellwick_Serial_Version 1.2\nb 2\n",
     {{"include-joins-word", true, 3, 2, 29, "'b' joins '\\'" + around_directive}}},
    {"a_misspelled_include_that_loses_a_name_is_an_error",
     "#Include x\na 1\n",
     {{"include-misspelled", true, 2, 1, 8,
       "'#Include' is read as a keyword and includes nothing: write #include \"name\", with one blank"}}},
    {"a_brace_too_many_is_told_behind_a_misspelled_include",
     "#Include \"x\"}\na 1\n",
     {{"include-misspelled", false, 2, 1, 8,
       "'#Include' is read as a keyword and includes nothing: write #include \"name\", with one blank"},
      {"text-after-end", true, 2, 13, 1, "'}' closes nothing, and the text after it is not read"}}},
    {"a_byte_order_mark_in_a_string_left_open_does_not_hide_it",
     "a \"x\xEF\xBB\xBF\nb 2\n",
     {{"string-left-open", true, 2, 3, 5,
       "this string is not closed on its line: a line's end is spelled '\\n'; 'b' in line 3 is skipped, too"},
      {"byte-order-mark-in-string", false, 2, 5, 3,
       "this string contains an invisible byte order mark: delete it"}}},
    {"a_comment_joins_strings",
     "a \"x\"// c\n\"y\"\n",
     {{"comment-joins-line", false, 2, 6, 2, "'\"y\"' joins '\"x\"'" + before_comment}}},
    {"comments_of_several_lines_join_too",
     "a 1// c\n// d\nb 2\n",
     {{"comment-joins-line", false, 2, 4, 2, "'b' joins '1'" + before_comment}}},
    {"a_comment_joins_nothing_behind_a_blank", "a 1 // c\nb 2\n", {}},
    {"a_comment_joins_nothing_before_a_blank_or_a_delimiter",
     "a 1// c\n b 2// d\n\ng {// e\nc 3// f\n}\n",
     {}},
    {"slashes_in_a_string_are_no_comment", "a \"http://x\"\nb 1\n", {}},
    {"an_include_is_spelled_in_small_letters",
     "#Include \"x\"\na 1\n",
     {{"include-misspelled", false, 2, 1, 8,
       "'#Include' is read as a keyword and includes nothing: write #include \"name\", with one blank"}}},
    {"an_include_has_one_blank",
     "#include  \"x\"\na 1\n",
     {{"include-misspelled", false, 2, 1, 8,
       "'#include' is read as a keyword and includes nothing: write #include \"name\", with one blank"}}},
    {"an_include_has_double_quotes",
     "#include <x>\na 1\n#INCLUDE 'x y'\nb 1\n",
     {{"include-misspelled", true, 2, 1, 8,
       "'#include' is read as a keyword and includes nothing: write #include \"name\", with one blank"},
      {"include-misspelled", true, 4, 1, 8,
       "'#INCLUDE' is read as a keyword and includes nothing: write #include \"name\", with one blank"}}},
    {"a_version_line_has_its_letters",
     "#brellwick_serial_version 1.2\na 1\n",
     {{"version-misspelled", false, 2, 1, 25,
       "'#brellwick_serial_version' is read as a keyword and states no version: write "
       "#Brellwick_Serial_Version 1.2, with one blank"}}},
    {"a_version_line_has_a_blank",
     "#Brellwick_Serial_Version\t1.1\na 1\n",
     {{"version-misspelled", false, 2, 1, 25,
       "'#Brellwick_Serial_Version' is read as a keyword and states no version: write "
       "#Brellwick_Serial_Version 1.2, with one blank"}}},
    {"a_second_version_counts",
     "#Brellwick_Serial_Version 1.1\na 1\n",
     {{"version-repeated", false, 2, 27, 3, "the file states a version twice; this one counts"}}},
    {"the_same_version_twice_is_none_too_many", "#Brellwick_Serial_Version 1.2 // again\na 1\n", {}},
    {"a_newer_version_is_told",
     "#Brellwick_Serial_Version 1.3\na 1\n",
     {{"version-too-new", false, 2, 27, 3,
       "version 1.3 is newer than 1.2, the latest that this library knows"},
      {"version-repeated", false, 2, 27, 3, "the file states a version twice; this one counts"}}},
    {"text_behind_a_version_is_dropped",
     "#Brellwick_Serial_Version 1.2 a 1\nb 1\n",
     {{"text-after-version", false, 2, 31, 3,
       "'a 1' is dropped with the version line: put it on the next line"}}},
    {"NUL_bytes_are_counted",
     std::string("a \"x\0\0\" // \0\nb 1\n", 17),
     {{"nul-byte", false, 2, 5, 1,
       "the file holds 3 NUL bytes, the first one here: it is damaged or not text"}}},
    {"bytes_that_are_no_UTF_8_are_counted",
     "a \"\xC3\xA9\xE9t\" // \xFF\nb 1\n",
     {{"not-utf-8", false, 2, 5, 1,
       "the file holds 2 bytes that are not UTF-8, the first one here: save the file as UTF-8"}}},
    {"a_byte_order_mark_in_a_string_is_told",
     "a \"\xEF\xBB\xBFx\" // \xEF\xBB\xBF\n",
     {{"byte-order-mark-in-string", false, 2, 4, 3,
       "this string contains an invisible byte order mark: delete it"}}},
    {"characters_of_all_lengths_are_UTF_8",
     "a \"\xC3\xA9 \xE3\x81\x82\xE3\x81\x84 \xED\x9F\xBF \xEE\x80\x80 \xEF\xBF\xBD \xF0\x9F\x98\x80\" // "
     "\xE0\xA0\x80\n",
     {}},
    {"surrogates_and_long_forms_are_no_UTF_8",
     "a \"\xED\xA0\x80\xE0\x80\x80\xC0\x80\"\n",
     {{"not-utf-8", false, 2, 4, 1,
       "the file holds 8 bytes that are not UTF-8, the first one here: save the file as UTF-8"}}},
    {"a_carriage_return_ends_a_line",
     "a 1\rb 2;\rc 3\r",
     {{"text-after-number", false, 3, 4, 1, "'2;' is read as 2, and ';' is ignored"}}},
    {"a_carriage_return_and_a_line_feed_end_one_line",
     "a 1\r\nb 2;\r\nc true\r\nd 1\r\n",
     {{"text-after-number", false, 3, 4, 1, "'2;' is read as 2, and ';' is ignored"},
      {"not-a-boolean", true, 4, 1, 1,
       "'c' has no value, and 'true' is skipped: booleans are yes and no; 'd' in line 5 is skipped, too"}}},
    {"a_column_is_a_character",
     "a \"\xC3\xA9\xE3\x81\x82\xF0\x9F\x98\x80\" 1;\n",
     {{"text-after-number", false, 2, 10, 1, "'1;' is read as 1, and ';' is ignored"}}},
    {"a_tab_is_one_column",
     "\ta\t1;\n",
     {{"text-after-number", false, 2, 5, 1, "'1;' is read as 1, and ';' is ignored"}}},
};

class DocumentProblemsOfSources : public testing::TestWithParam<ToldRow> {};

TEST_P(DocumentProblemsOfSources, are_told_where_they_stand) {
    EXPECT_EQ(told_of(GetParam().text), GetParam().told);
}

INSTANTIATE_TEST_SUITE_P(rows, DocumentProblemsOfSources, testing::ValuesIn(rows), name_of_row);

class document_problems_files : public testing::Test {
protected:
    bk_parser::LoadResult load_main(const std::string& text) const {
        folder.write("main.bkd", text);
        return bk_parser::load(folder.path("main.bkd"));
    }

    ScratchFolder folder;
};

TEST_F(document_problems_files, a_place_is_one_of_the_included_file_with_its_chain) {
    folder.write("parts/lamp.bkd", "// lamp\r\nlamp {\r\n\tpower 60.0;\r\n}\r\n");
    folder.write("row.bkd", "#include \"parts/lamp.bkd\"\n");
    const bk_parser::LoadResult result = load_main(version_line + "a 1\n#include \"row.bkd\"\nb 2\n");
    ASSERT_EQ(result.problems.size(), 1u);
    const bk_parser::Problem& problem = result.problems[0];
    EXPECT_EQ(problem.code, "text-after-number");
    EXPECT_EQ(problem.file.filename(), "lamp.bkd");
    EXPECT_EQ(problem.line, 3u);
    EXPECT_EQ(problem.column, 12u);
    EXPECT_EQ(problem.offset, 28u);
    EXPECT_EQ(problem.length, 1u);
    EXPECT_EQ(problem.source_line, "\tpower 60.0;");
    ASSERT_EQ(problem.included_from.size(), 2u);
    EXPECT_EQ(problem.included_from[0].filename(), "row.bkd");
    EXPECT_EQ(problem.included_from[1].filename(), "main.bkd");
    EXPECT_TRUE(result.ok());
}

TEST_F(document_problems_files, what_is_wrong_in_a_file_is_told_once_however_often_it_is_included) {
    folder.write("x.bkd", "x 1;// c\ny % // \xFF\n");
    const bk_parser::LoadResult result = load_main("#include \"x.bkd\"\n#include \"x.bkd\"\na 1;\n");
    std::vector<std::string> codes;
    for (const bk_parser::Problem& problem : result.problems) {
        codes.push_back(problem.code);
    }
    const std::vector<std::string> expected = {"comment-joins-line", "unexpected-word", "not-utf-8",
                                               "text-after-number"};
    EXPECT_EQ(codes, expected);
}

TEST_F(document_problems_files, problems_are_in_the_order_of_the_expanded_text) {
    folder.write("x.bkd", "x 2;\n");
    const bk_parser::LoadResult result = load_main("a 1; \xFF\n#include \"x.bkd\"\nb \"\xFE\" 3;\nc\n");
    std::vector<std::string> places;
    for (const bk_parser::Problem& problem : result.problems) {
        places.push_back(problem.file.filename().string() + " " + problem.code + " " +
                         std::to_string(problem.line));
    }
    const std::vector<std::string> expected = {"main.bkd text-after-number 1", "main.bkd bad-name 1",
                                               "main.bkd not-utf-8 1",         "x.bkd text-after-number 1",
                                               "main.bkd text-after-number 3", "main.bkd no-value 4"};
    EXPECT_EQ(places, expected);
}

TEST_F(document_problems_files, an_include_joins_the_words_around_it) {
    folder.write("x.bkd", "b 2");
    EXPECT_EQ(told_of(load_main("a 1#include \"x.bkd\"\nc 3\n")),
              (std::vector<ToldProblem>{
                  {"include-joins-word", false, 1, 4, 16, "'b' joins '1'" + around_directive}}));
    EXPECT_EQ(told_of(load_main("a 1\n#include \"x.bkd\"c 3\n")),
              (std::vector<ToldProblem>{
                  {"include-joins-word", false, 2, 1, 16, "'c' joins '2'" + around_directive}}));
}

TEST_F(document_problems_files, the_version_of_an_included_file_does_not_count) {
    folder.write("x.bkd", version_line + "x \"a\\n\"\n");
    const std::vector<ToldProblem> told = {
        {"version-of-include", false, 1, 27, 3,
         "the version of an included file does not count: here a backslash stands for itself"}};
    EXPECT_EQ(told_of(load_main("#include \"x.bkd\"\n")), told);
    EXPECT_EQ(told_of(load_main(version_line + "#include \"x.bkd\"\n")), std::vector<ToldProblem>{});
    folder.write("x.bkd", version_line + "x \"\"\n"); // it has the same meaning in every version
    EXPECT_EQ(told_of(load_main("#include \"x.bkd\"\n")), std::vector<ToldProblem>{});
}

TEST_F(document_problems_files, an_included_file_needs_no_version_line_for_its_escapes) {
    folder.write("x.bkd", R"(x "say \"hi\"")"
                          "\n");
    EXPECT_EQ(told_of(load_main(version_line + "#include \"x.bkd\"\n")), std::vector<ToldProblem>{});
    EXPECT_EQ(bk_parser::load(folder.path("x.bkd")).problems.at(0).code, "escape-without-version");
}

TEST_F(document_problems_files, a_directive_in_a_string_is_obeyed) {
    folder.write("x.bkd", "x");
    const std::vector<ToldProblem> told = {
        {"directive-in-string", false, 2, 8, 16,
         "a directive takes effect inside a string, too: write the string differently"}};
    EXPECT_EQ(told_of(load_main(version_line + "a \"see #include \"x.bkd\"\"\n")), told);
}

TEST_F(document_problems_files, a_directive_in_a_string_that_loses_an_entry_is_an_error) {
    folder.write("inc.bkd", "c 3\n");
    const bk_parser::LoadResult result = load_main("a \"x #include \"inc.bkd\"\"\nb 2\n");
    const std::vector<ToldProblem> told = {
        {"directive-in-string", true, 1, 6, 18,
         "a directive takes effect inside a string, too: write the string differently"}};
    EXPECT_EQ(told_of(result), told);
    EXPECT_FALSE(result.ok());
}

TEST_F(document_problems_files, a_byte_order_mark_before_the_text_is_no_column) {
    const bk_parser::LoadResult result = load_main("\xEF\xBB\xBF"
                                                   "b 2 %\n");
    const std::vector<ToldProblem> told = {{"unexpected-word", true, 1, 5, 1, "unexpected '%'"}};
    EXPECT_EQ(told_of(result), told);
    ASSERT_EQ(result.problems.size(), 1u);
    EXPECT_EQ(result.problems[0].offset, 7u);
    EXPECT_EQ(result.problems[0].source_line, "b 2 %");
}

TEST_F(document_problems_files, codes_that_are_allowed_are_not_told) {
    bk_parser::LoadOptions options;
    options.allow = {"text-after-number"};
    EXPECT_EQ(told_of(bk_parser::parse("a 1; 2E5\n", options)),
              (std::vector<ToldProblem>{{"exponent-ignored", false, 1, 6, 3,
                                         "'2E5' is read as 2: write the exponent with a small e"}}));
}

TEST_F(document_problems_files, ten_thousand_problems_on_one_line_are_told_in_order) {
    std::string text = "a";
    for (int i = 0; i < 20000; ++i) {
        text += " 1;";
    }
    const bk_parser::LoadResult result = bk_parser::parse(text);
    ASSERT_EQ(result.problems.size(), 10001u);
    EXPECT_EQ(result.problems[0].column, 4u);
    EXPECT_EQ(result.problems[9999].column, 30001u);
    EXPECT_EQ(result.problems[0].source_line.size(), 4096u);
    EXPECT_EQ(result.problems[9999].source_line.size(), 4096u);
}

TEST_F(document_problems_files, many_mistakes_on_one_line_are_told_in_linear_time) {
    std::string text;
    for (int i = 0; i < 100000; ++i) {
        text += "a ' b ";
    }
    EXPECT_FALSE(bk_parser::parse(text).problems.empty());
}

} // namespace
