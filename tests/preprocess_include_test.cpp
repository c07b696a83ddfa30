#include "tests/support/document_folder.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace {

using Messages = std::vector<std::string>;

} // namespace

TEST(preprocess_include, the_file_named_stands_in_place_of_the_directive) {
    const DocumentFolder folder;
    folder.write("x.bkd", "b 2\n");
    const Reading reading = folder.read_text("a 1\n#include \"x.bkd\"\nc 3\n");
    EXPECT_TRUE(reading.result);
    EXPECT_EQ(reading.expanded, "a 1\nb 2\n\nc 3\n");
    EXPECT_EQ(reading.tree, " a 1 b 2 c 3");
}

TEST(preprocess_include, it_may_stand_in_the_middle_of_a_line_or_a_word) {
    const DocumentFolder folder;
    folder.write("x.bkd", "2");
    EXPECT_EQ(folder.read_text("a 1#include \"x.bkd\"3 b 4").expanded, "a 123 b 4");
}

TEST(preprocess_include, an_included_file_may_include_others) {
    const DocumentFolder folder;
    folder.write("x.bkd", "b #include \"y.bkd\" 4\n");
    folder.write("y.bkd", "3");
    EXPECT_EQ(folder.read_text("a 1 #include \"x.bkd\"c 5").expanded, "a 1 b 3 4\nc 5");
}

TEST(preprocess_include, an_included_file_may_be_empty) {
    const DocumentFolder folder;
    folder.write("x.bkd", "");
    EXPECT_EQ(folder.read_text("a #include \"x.bkd\"1 ").expanded, "a 1 ");
}

TEST(preprocess_include, groups_may_be_spread_over_files) {
    const DocumentFolder folder;
    folder.write("open.bkd", "a {\n b 1\n");
    folder.write("close.bkd", " c 2 }\n");
    EXPECT_EQ(folder.read_text("#include \"open.bkd\"\n#include \"close.bkd\"\n").tree, " a { b 1 c 2 }");
}

TEST(preprocess_include, it_is_expanded_inside_a_string) {
    const DocumentFolder folder;
    folder.write("x.bkd", "inner");
    const Reading reading = folder.read_text("a \"[#include \"x.bkd\"]\" // c");
    EXPECT_EQ(reading.expanded, "a \"[inner]\" ");
    EXPECT_EQ(reading.tree, " a \"[inner]\"");
}

TEST(preprocess_include, a_string_goes_on_after_an_include_in_it) {
    const DocumentFolder folder;
    folder.write("x.bkd", "inner \" quote");
    EXPECT_EQ(folder.read_text("a \"#include \"x.bkd\" // s\" // c").expanded, "a \"inner \" quote // s\" ");
}

TEST(preprocess_include, an_included_file_is_scanned_from_outside_a_string) {
    const DocumentFolder folder;
    folder.write("x.bkd", "inner // comment\nend");
    EXPECT_EQ(folder.read_text("a \"#include \"x.bkd\"\"").expanded, "a \"inner end\"");
}

TEST(preprocess_include, a_quote_as_the_first_byte_of_an_included_file_opens_no_string) {
    const DocumentFolder folder;
    folder.write("x.bkd", "\"inner // comment\"\nend");
    EXPECT_EQ(folder.read_text("a #include \"x.bkd\"").expanded, "a \"inner end");
}

TEST(preprocess_include, a_comment_at_the_end_of_an_included_file_ends_with_it) {
    const DocumentFolder folder;
    folder.write("x.bkd", "b 2 // comment");
    EXPECT_EQ(folder.read_text("#include \"x.bkd\" c 3").expanded, "b 2  c 3");
}

TEST(preprocess_include, it_is_not_expanded_in_a_comment) {
    const DocumentFolder folder;
    const Reading reading = folder.read_text("// #include \"missing.bkd\"\na 1");
    EXPECT_TRUE(reading.result);
    EXPECT_EQ(reading.expanded, "a 1");
}

TEST(preprocess_include, one_blank_and_a_quote_belong_to_the_directive) {
    const DocumentFolder folder;
    folder.write("x.bkd", "b 2");
    for (const char* text : {"#include  \"x.bkd\" ", "#include\t\"x.bkd\" ", "#include\"x.bkd\" ",
                             "#Include \"x.bkd\" ", "#include x.bkd "}) {
        EXPECT_EQ(folder.read_text(text).expanded, text);
    }
}

TEST(preprocess_include, the_name_runs_to_the_next_quote_whatever_stands_between) {
    const DocumentFolder folder;
    folder.write("with blank {x}.bkd", "b 2");
    EXPECT_EQ(folder.read_text("#include \"with blank {x}.bkd\"").expanded, "b 2");
    EXPECT_EQ(folder.read_text("#include \"x\ny\"").messages, not_found("x\ny", 2));
    EXPECT_EQ(folder.read_text("#include \"x\\\"").messages, not_found("x\\", 2));
}

TEST(preprocess_include, a_name_without_a_closing_quote_fails_without_a_message) {
    const DocumentFolder folder;
    for (const char* text : {"a 1\n#include \"x.bkd\nb 2\n", "a 1 #include \"", "#include \"x"}) {
        const Reading reading = folder.read_text(text);
        EXPECT_FALSE(reading.result) << text;
        EXPECT_EQ(reading.tree, "") << text;
        EXPECT_EQ(reading.version, 0.0) << text;
        EXPECT_EQ(reading.messages, Messages{}) << text;
    }
}

TEST(preprocess_include, an_included_file_with_a_name_left_open_fails_the_whole_read) {
    const DocumentFolder folder;
    folder.write("x.bkd", "#include \"y");
    EXPECT_FALSE(folder.read_text("a 1\n#include \"x.bkd\"\n").result);
}

TEST(preprocess_include, a_missing_file_fails_the_whole_read) {
    const DocumentFolder folder;
    const Reading reading = folder.read_text("a 1\n#include \"missing.bkd\"\nb 2\n");
    EXPECT_FALSE(reading.result);
    EXPECT_EQ(reading.version, 0.0);
    EXPECT_EQ(reading.tree, "");
    EXPECT_EQ(reading.messages, (Messages{"File 'missing.bkd' not found.\n", "  Looked for:\n",
                                          "    - 'missing.bkd'\n", "    - 'missing.bkd'\n"}));
}

TEST(preprocess_include, the_read_ends_at_the_first_missing_file) {
    const DocumentFolder folder;
    EXPECT_EQ(folder.read_text("#include \"one\"\n#include \"two\"\n").messages, not_found("one", 2));
}

TEST(preprocess_include, a_missing_file_deep_inside_fails_the_whole_read) {
    const DocumentFolder folder;
    folder.write("x.bkd", "#include \"y.bkd\"\n");
    folder.write("y.bkd", "#include \"missing.bkd\"\n");
    const Reading reading = folder.read_text("a 1\n#include \"x.bkd\"\n");
    EXPECT_FALSE(reading.result);
    EXPECT_EQ(reading.messages, not_found("missing.bkd", 2));
}

// Cycles and depth

TEST(preprocess_include, a_file_that_includes_itself_is_refused) {
    const DocumentFolder folder;
    const Reading reading = folder.read_text("a 1\n#include \"main.bkd\"\n");
    EXPECT_FALSE(reading.result);
    EXPECT_EQ(reading.version, 0.0);
    EXPECT_EQ(reading.tree, "");
    EXPECT_EQ(reading.messages, (Messages{"File 'main.bkd' includes itself.\n"}));
}

TEST(preprocess_include, a_file_that_includes_itself_through_others_is_refused) {
    const DocumentFolder folder;
    folder.write("x.bkd", "#include \"y.bkd\"\n");
    folder.write("y.bkd", "#include \"x.bkd\"\n");
    EXPECT_EQ(folder.read_text("#include \"x.bkd\"\n").messages,
              (Messages{"File 'x.bkd' includes itself.\n"}));
    folder.write("y.bkd", "#include \"main.bkd\"\n");
    EXPECT_EQ(folder.read_text("#include \"x.bkd\"\n").messages,
              (Messages{"File 'main.bkd' includes itself.\n"}));
}

TEST(preprocess_include, a_cycle_is_found_however_the_name_is_written) {
    const DocumentFolder folder;
    folder.make_folder("sub");
    EXPECT_EQ(folder.read_text("#include \"sub/.././main.bkd\"\n").messages,
              (Messages{"File 'sub/.././main.bkd' includes itself.\n"}));
}

TEST(preprocess_include, a_cycle_is_found_when_the_top_level_file_came_from_a_search_path) {
    const DocumentFolder folder;
    folder.write("top.bkd", "#include \"top.bkd\"\n");
    ParserFile file(CoreString{});
    file.set_search_paths({core(folder.path())});
    EXPECT_EQ(DocumentFolder::read_into(file, "top.bkd").messages,
              (Messages{"File 'top.bkd' includes itself.\n"}));
}

TEST(preprocess_include, a_file_that_was_left_may_be_included_again) {
    const DocumentFolder folder;
    folder.write("x.bkd", "#include \"y.bkd\"");
    folder.write("y.bkd", "1 ");
    const Reading reading = folder.read_text("a #include \"y.bkd\"#include \"x.bkd\"#include \"x.bkd\"");
    EXPECT_TRUE(reading.result);
    EXPECT_EQ(reading.expanded, "a 1 1 1 ");
}

namespace {

/// A chain of `includes` includes below main.bkd. The last file has the text "a 1".
Reading read_chain(unsigned int includes) {
    const DocumentFolder folder;
    for (unsigned int i = 1; i <= includes; ++i) {
        folder.write(std::to_string(i) + ".bkd",
                     i == includes ? "a 1\n" : "#include \"" + std::to_string(i + 1) + ".bkd\"\n");
    }
    return folder.read_text("#include \"1.bkd\"\n");
}

} // namespace

TEST(preprocess_include, a_chain_of_200_includes_is_expanded) {
    const Reading reading = read_chain(200);
    EXPECT_TRUE(reading.result);
    EXPECT_EQ(reading.tree, " a 1");
    EXPECT_EQ(reading.dependencies.size(), 200u);
}

TEST(preprocess_include, a_deeper_chain_is_refused) {
    for (const unsigned int includes : {201u, 1000u}) {
        const Reading reading = read_chain(includes);
        EXPECT_FALSE(reading.result);
        EXPECT_EQ(reading.messages, Messages{"File '201.bkd' is included too deeply.\n"});
    }
}

TEST(preprocess_include, a_wide_document_has_no_such_limit) {
    const DocumentFolder folder;
    folder.write("x.bkd", "a 1\n");
    std::string text;
    for (int i = 0; i < 1000; ++i) {
        text += "#include \"x.bkd\"";
    }
    const Reading reading = folder.read_text(text);
    EXPECT_TRUE(reading.result);
    EXPECT_EQ(reading.expanded.size(), 4000u);
}
