#include "document/format.h"
#include "document/load.h"
#include "tests/support/odd_layout.h"
#include "tests/support/random_layout.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>

namespace {

using bk_parser::format_text;

std::string laid_out(std::string_view text, unsigned int width = 100) {
    bk_parser::FormatOptions options;
    options.width = width;
    const bk_parser::FormatResult result = format_text(text, options);
    EXPECT_EQ(result.reason, "");
    EXPECT_EQ(format_text(result.text, options).text, result.text) << "laid out again";
    return result.text;
}

std::string tree_of(std::string_view text) {
    bk_parser::LoadOptions options;
    options.follow_includes = false;
    const bk_parser::LoadResult result = bk_parser::parse(text, options);
    CoreString tree;
    result.document.root().get_text(tree, false, true, 1);
    return std::string(tree.get_view());
}

// The comments of a text, one per line. In these texts, a string that holds "//" ends right after " y".
std::string comments_of(std::string text) {
    for (std::size_t i = text.find("// y\""); i != std::string::npos; i = text.find("// y\"")) {
        text.erase(i, 2);
    }
    std::string comments;
    for (std::size_t i = text.find("//"); i != std::string::npos; i = text.find("//", i + 2)) {
        std::string line = text.substr(i, text.find_first_of("\r\n", i) - i);
        line.erase(line.find_last_not_of(" \t") + 1);
        comments += line + "\n";
    }
    return comments;
}

TEST(format_text, each_entry_stands_on_a_line_of_its_own) {
    EXPECT_EQ(laid_out("a 1 b   2\tc \"x  y\"\n"), "a 1\nb 2\nc \"x  y\"\n");
}

TEST(format_text, groups_are_indented) {
    EXPECT_EQ(laid_out("a { b 1 c \"k\"{ d 2 } } e {} f { }"),
              "a {\n    b 1\n    c \"k\" {\n        d 2\n    }\n}\ne {}\nf {}\n");
}

TEST(format_text, signs_stay_and_stand_where_people_write_them) {
    EXPECT_EQ(laid_out("a=1,2 , 3\nf ( 1,\"two\" )\ng()\nh <empty>\n"),
              "a = 1, 2, 3\nf(1, \"two\")\ng()\nh <empty>\n");
}

TEST(format_text, words_keep_their_spelling) {
    EXPECT_EQ(laid_out("a  0042 1.50 1e5 \"\\n\" yes 0x01FF00010000\nb<t> 1\nc[3] 1\n#key 1\n"),
              "a 0042 1.50 1e5 \"\\n\" yes 0x01FF00010000\nb<t> 1\nc[3] 1\n#key 1\n");
}

TEST(format_text, of_blank_lines_one_is_kept_between_things_and_none_at_the_ends_of_a_group) {
    EXPECT_EQ(laid_out("\n\na 1\n\n\n\nb {\n\n c 1\n\n d 2\n\n}\ne 1\n\n\n"),
              "a 1\n\nb {\n    c 1\n\n    d 2\n}\ne 1\n");
}

TEST(format_text, comments_stay_behind_and_above_what_they_are_about) {
    EXPECT_EQ(laid_out("// head  \n\na 1   // one\n  // of b\nb { // inside\n// alone\n} // behind\n//end"),
              "// head\n\na 1 // one\n// of b\nb { // inside\n    // alone\n} // behind\n//end\n");
}

TEST(format_text, comments_between_the_values_of_an_entry_break_its_line) {
    EXPECT_EQ(laid_out("a 1 // one\n 2 // two\n// three\n 3 4\n"),
              "a 1 // one\n    2 // two\n    // three\n    3 4\n");
    EXPECT_EQ(laid_out("a // name\n{ b 1 }\n"), "a // name\n{\n    b 1\n}\n");
}

TEST(format_text, long_lists_are_wrapped_and_long_words_are_not) {
    EXPECT_EQ(laid_out("a 1111 2222 3333 4444\n", 12), "a 1111 2222\n    3333\n    4444\n");
    EXPECT_EQ(laid_out("a 1111, 222, 3\n", 12), "a 1111, 222,\n    3\n");
    EXPECT_EQ(laid_out("a \"more than the width\" 1\n", 12), "a \"more than the width\"\n    1\n");
    EXPECT_EQ(laid_out("a \"\xC3\xA4\xC3\xB6\xC3\xBC\" \"1234\"\n", 14),
              "a \"\xC3\xA4\xC3\xB6\xC3\xBC\" \"1234\"\n");
}

TEST(format_text, include_and_version_lines_stay) {
    EXPECT_EQ(
        laid_out("#Brellwick_Serial_Version 1.2  \n  #include \"x\"// it\n\na { #include \"y\" \n b 1 }\n"),
        "#Brellwick_Serial_Version 1.2\n#include \"x\" // it\n\na {\n    #include \"y\"\n    b 1\n}\n");
}

TEST(format_text, line_ends_and_the_byte_order_mark_stay) {
    EXPECT_EQ(laid_out("\xEF\xBB\xBF"
                       "a 1 b 2\r\nc 3"),
              "\xEF\xBB\xBF"
              "a 1\r\nb 2\r\nc 3\r\n");
}

TEST(format_text, a_name_before_a_version_line_at_the_end_is_laid_out_once) {
    const std::string laid = laid_out("n  #Brellwick_Serial_Version 1");
    EXPECT_EQ(laid, "n  \n#Brellwick_Serial_Version 1\n");
    EXPECT_EQ(laid_out(laid), laid);
}

TEST(format_text, a_name_without_values_at_the_end_stays_an_entry) {
    EXPECT_EQ(laid_out("a 1\nb\n\n"), "a 1\nb\n\n");
    EXPECT_EQ(laid_out("b  // x\n"), "b  // x\n");
    EXPECT_EQ(laid_out("b\n\n// x\n"), "b  \n\n// x\n");
}

TEST(format_text, a_text_with_errors_is_refused_with_their_places) {
    const bk_parser::FormatResult result = format_text("a 1\nb\nc 2 )\n");
    EXPECT_EQ(result.reason, "has errors");
    EXPECT_EQ(result.text, "");
    ASSERT_FALSE(result.problems.empty());
    EXPECT_EQ(result.problems.front().line, 2u);
}

TEST(format_text, a_comment_or_a_directive_that_touches_a_word_is_refused) {
    const char* const reason = "a comment or a directive touches a word; put a blank between them";
    EXPECT_EQ(format_text("a 1// x\n2\n").reason, reason);
    EXPECT_EQ(format_text("a 1#include \"x\"\n").reason, reason);
    EXPECT_EQ(format_text("a 1// x\n 2\n").text, "a 1 // x\n    2\n");
}

TEST(format_text, other_forms_are_refused) {
    EXPECT_EQ(format_text(std::string_view("\0\0\0\1", 4)).reason.empty(), false);
}

TEST(format_text, texts_of_nothing_stay_so) {
    EXPECT_EQ(laid_out(""), "");
    EXPECT_EQ(laid_out("// x"), "// x\n");
}

TEST(format_text, what_would_be_indented_beyond_a_text_is_refused) {
    std::string text;
    for (int i = 0; i < 1000; ++i) {
        text += "a{";
    }
    text += std::string(1000, '}');
    bk_parser::FormatOptions options;
    options.indent = 1'000'000;
    EXPECT_EQ(format_text(text, options).reason, "would be larger than 4 GiB");
}

/// Formats a text in two widths. Expects the same tree and comments, and the same result when it is formatted
/// again. False when it is refused.
bool keeps_all(const std::string& text) {
    bool is_laid_out = false;
    for (const unsigned int width : {20u, 100u}) {
        bk_parser::FormatOptions options;
        options.width = width;
        const bk_parser::FormatResult result = format_text(text, options);
        if (!result.ok()) {
            EXPECT_NE(result.reason, "would be read differently once formatted") << text;
            continue;
        }
        is_laid_out = true;
        EXPECT_EQ(tree_of(result.text), tree_of(text)) << text;
        EXPECT_EQ(comments_of(result.text), comments_of(text)) << text;
        EXPECT_EQ(format_text(result.text, options).text, result.text) << text;
    }
    return is_laid_out;
}

template <class Layout>
unsigned int count_laid_out(unsigned int seeds) {
    unsigned int count = 0;
    for (unsigned int seed = 0; seed < seeds && !testing::Test::HasFailure(); ++seed) {
        const Layout layout(seed);
        for (const auto& [name, text] : layout.files()) {
            count += keeps_all(text) ? 1 : 0;
        }
    }
    return count;
}

TEST(format_text, random_layouts_keep_their_trees_and_comments_and_come_back_the_same) {
    EXPECT_GT(count_laid_out<RandomLayout>(3000), 3000u);
}

TEST(format_text, comments_in_odd_places_stay_and_change_nothing_that_is_read) {
    EXPECT_GT(count_laid_out<OddLayout>(3000), 3000u);
}

TEST(format_text, every_text_of_the_corpora_keeps_its_tree_and_comes_back_the_same) {
    unsigned int count = 0;
    for (const char* root :
         {BK_PARSER_SOURCE_DIR "/fuzz/corpus/text", BK_PARSER_SOURCE_DIR "/fuzz/corpus/document",
          BK_PARSER_SOURCE_DIR "/tests/data", BK_PARSER_SOURCE_DIR "/examples"}) {
        for (const auto& entry : std::filesystem::recursive_directory_iterator(root)) {
            if (!entry.is_regular_file()) {
                continue;
            }
            std::ifstream file(entry.path(), std::ios::binary);
            const std::string text{std::istreambuf_iterator<char>(file), {}};
            const bk_parser::FormatResult result = format_text(text);
            if (result.ok()) {
                EXPECT_EQ(tree_of(result.text), tree_of(text)) << entry.path();
                EXPECT_EQ(format_text(result.text).text, result.text) << entry.path();
                ++count;
            }
        }
    }
    EXPECT_GT(count, 20u);
}

TEST(format_text, indentation_ends_at_a_hundred_levels) {
    constexpr std::size_t depth = 20000;
    std::string text;
    for (std::size_t i = 0; i < depth; ++i) {
        text += "a{";
    }
    text += "b 1" + std::string(depth, '}');
    const std::string result = laid_out(text);
    EXPECT_LT(result.size(), 2 * depth * 410);
    EXPECT_NE(result.find("\n" + std::string(4 * 99, ' ') + "a {\n" + std::string(4 * 100, ' ') + "a {\n" +
                          std::string(4 * 100, ' ') + "a {\n"),
              std::string::npos);
    EXPECT_EQ(format_text(result).text, result);
}

TEST(format_text, every_example_keeps_its_tree_and_comes_back_the_same) {
    unsigned int count = 0;
    for (const auto& entry :
         std::filesystem::recursive_directory_iterator(BK_PARSER_SOURCE_DIR "/examples/project")) {
        if (entry.path().extension() != ".bkd") {
            continue;
        }
        std::ifstream file(entry.path(), std::ios::binary);
        const std::string text{std::istreambuf_iterator<char>(file), {}};
        EXPECT_EQ(tree_of(laid_out(text)), tree_of(text)) << entry.path();
        ++count;
    }
    EXPECT_GT(count, 5u);
}

} // namespace
