#include "tests/support/document_folder.h"

#include <gtest/gtest.h>

namespace {

std::string expanded(std::string_view text) {
    const DocumentFolder folder;
    const Reading reading = folder.read_text(text);
    EXPECT_TRUE(reading.result);
    return reading.expanded;
}

} // namespace

TEST(preprocess_scan, plain_text_is_copied) {
    EXPECT_EQ(expanded("a 1\nb { c \"x\" }\n"), "a 1\nb { c \"x\" }\n");
}

TEST(preprocess_scan, texts_of_up_to_four_bytes_are_copied) {
    EXPECT_EQ(expanded(""), "");
    EXPECT_EQ(expanded(" "), " ");
    EXPECT_EQ(expanded("a 1"), "a 1");
    EXPECT_EQ(expanded("a 12"), "a 12");
    EXPECT_EQ(expanded("a 123"), "a 123");
}

TEST(preprocess_scan, every_byte_is_copied_as_it_is) {
    std::string text = "a ";
    for (int code = 0; code < 256; ++code) {
        text += static_cast<char>(code);
    }
    EXPECT_EQ(expanded(text), text);
}

TEST(preprocess_scan, carriage_returns_are_copied) {
    EXPECT_EQ(expanded("a 1\rb 2\r"), "a 1\rb 2\r");
}

TEST(preprocess_scan, line_ends_of_the_platform_become_line_feeds) {
    EXPECT_EQ(expanded(on_disk("a 1\nb 2\n")), "a 1\nb 2\n");
}

// Comments

TEST(preprocess_scan, a_comment_goes_with_its_line_feed) {
    const DocumentFolder folder;
    const Reading reading = folder.read_text("a 1 // note\nb 2");
    EXPECT_EQ(reading.expanded, "a 1 b 2");
    EXPECT_EQ(reading.tree, " a 1 b 2");
}

TEST(preprocess_scan, a_comment_joins_the_words_around_it) {
    EXPECT_EQ(expanded("a 1// note\n2"), "a 12");
}

TEST(preprocess_scan, a_comment_at_the_end_runs_to_the_end) {
    EXPECT_EQ(expanded("a 1 // note"), "a 1 ");
    EXPECT_EQ(expanded("a 1 //"), "a 1 ");
    EXPECT_EQ(expanded("// note"), "");
}

TEST(preprocess_scan, comment_after_comment_is_dropped) {
    EXPECT_EQ(expanded("// one\n// two\n//\na 1 // three\n// four\n"), "a 1 ");
}

TEST(preprocess_scan, a_carriage_return_before_the_line_feed_of_a_comment_goes_with_it) {
    EXPECT_EQ(expanded("a 1 // note\r\nb 2"), "a 1 b 2");
}

TEST(preprocess_scan, a_carriage_return_alone_does_not_end_a_comment) {
    EXPECT_EQ(expanded("a 1 // note\rb 2\nc 3"), "a 1 c 3");
}

TEST(preprocess_scan, one_slash_is_no_comment) {
    EXPECT_EQ(expanded("a / b /\nc"), "a / b /\nc");
    EXPECT_EQ(expanded("a 1 /"), "a 1 /");
}

TEST(preprocess_scan, three_slashes_are_a_comment) {
    EXPECT_EQ(expanded("a 1 ///\nb 2"), "a 1 b 2");
}

TEST(preprocess_scan, a_quote_in_a_comment_opens_no_string) {
    EXPECT_EQ(expanded("a 1 // \"\nb 2 // note"), "a 1 b 2 ");
}

TEST(preprocess_scan, slashes_in_a_string_are_copied) {
    const DocumentFolder folder;
    const Reading reading = folder.read_text("a \"x // y\" 1 // z\n");
    EXPECT_EQ(reading.expanded, "a \"x // y\" 1 ");
    EXPECT_EQ(reading.tree, " a \"x // y\" 1");
}

TEST(preprocess_scan, a_string_goes_on_over_line_feeds_for_comments) {
    EXPECT_EQ(expanded("a \"x\n// y\n\" // z"), "a \"x\n// y\n\" ");
}

// Quotes and backslashes

TEST(preprocess_scan, an_escaped_quote_does_not_end_a_string) {
    EXPECT_EQ(expanded(R"(a "x\" // y" // z)"), R"(a "x\" // y" )");
}

TEST(preprocess_scan, a_quote_after_an_even_run_of_backslashes_ends_a_string) {
    EXPECT_EQ(expanded(R"(a "x\\" // y")"), R"(a "x\\" )");
    EXPECT_EQ(expanded(R"(a "x\\\\" // y")"), R"(a "x\\\\" )");
}

TEST(preprocess_scan, a_quote_after_an_odd_run_of_backslashes_does_not_end_a_string) {
    EXPECT_EQ(expanded(R"(a "x\\\" // y" // z)"), R"(a "x\\\" // y" )");
    EXPECT_EQ(expanded(R"(a "x\\\\\" // y" // z)"), R"(a "x\\\\\" // y" )");
}

TEST(preprocess_scan, an_escaped_quote_outside_a_string_does_not_open_one) {
    EXPECT_EQ(expanded(R"(a \" // y)"), R"(a \" )");
    EXPECT_EQ(expanded(R"(a \\" // y)"), R"(a \\" // y)");
}

TEST(preprocess_scan, a_run_of_backslashes_is_counted_anew_after_any_other_byte) {
    EXPECT_EQ(expanded(R"(a "\x\" // y" // z)"), R"(a "\x\" // y" )");
    EXPECT_EQ(expanded(R"(a "\\x\" // y" // z)"), R"(a "\\x\" // y" )");
}

TEST(preprocess_scan, a_run_of_backslashes_is_counted_anew_after_a_hexadecimal_run) {
    EXPECT_EQ(expanded(R"(\0x1\" // y)"), R"(\0x1\" )");
}

TEST(preprocess_scan, a_quote_as_the_first_byte_opens_no_string) {
    EXPECT_EQ(expanded("\"x // y\" 1\na 2"), "\"x a 2");
}

TEST(preprocess_scan, after_a_quote_as_the_first_byte_the_next_one_opens_a_string) {
    EXPECT_EQ(expanded("\"x\" // y\" // z"), "\"x\" // y\" ");
}

TEST(preprocess_scan, a_quote_as_the_second_byte_opens_a_string) {
    EXPECT_EQ(expanded(" \"x // y\" // z"), " \"x // y\" ");
}

TEST(preprocess_scan, a_backslash_before_a_quote_as_the_first_two_bytes_escapes_it) {
    EXPECT_EQ(expanded("\\\" // y"), "\\\" ");
}

// Hexadecimal runs

TEST(preprocess_scan, hexadecimal_runs_are_copied) {
    EXPECT_EQ(expanded("a 0x0123456789abcdefABCDEF b"), "a 0x0123456789abcdefABCDEF b");
    EXPECT_EQ(expanded("0x"), "0x");
    EXPECT_EQ(expanded("0xg"), "0xg");
    EXPECT_EQ(expanded("0X12"), "0X12");
}

TEST(preprocess_scan, scanning_goes_on_at_the_first_byte_after_a_hexadecimal_run) {
    EXPECT_EQ(expanded("a 0x12// note\nb 1"), "a 0x12b 1");
    EXPECT_EQ(expanded("a 0x//note\nb 1"), "a 0xb 1");
    EXPECT_EQ(expanded("a 0x12\"// x\" // y"), "a 0x12\"// x\" ");
    EXPECT_EQ(expanded("a 0x0x12"), "a 0x0x12");
}

TEST(preprocess_scan, binary_data_reads_as_it_was_written) {
    const DocumentFolder folder;
    EXPECT_EQ(folder.read_text("a 0x01FF00010000 2\n").tree, " a 0x01FF00010000 2");
}

TEST(preprocess_scan, a_hexadecimal_run_in_a_string_is_copied_like_the_rest) {
    EXPECT_EQ(expanded("a \"0x12 // y\" // z"), "a \"0x12 // y\" ");
}
