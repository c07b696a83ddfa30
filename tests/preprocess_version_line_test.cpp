#include "tests/support/document_folder.h"

#include <gtest/gtest.h>

namespace {

Reading reading_of(std::string_view text) {
    const DocumentFolder folder;
    return folder.read_text(text);
}

} // namespace

TEST(preprocess_version_line, a_text_without_one_is_of_version_1_0) {
    const Reading reading = reading_of("a 1\n");
    EXPECT_TRUE(reading.result);
    EXPECT_EQ(reading.version, 1.0);
}

TEST(preprocess_version_line, it_gives_the_version_and_is_dropped_with_its_line_feed) {
    const Reading reading = reading_of("#Brellwick_Serial_Version 1.2\na 1\n");
    EXPECT_TRUE(reading.result);
    EXPECT_EQ(reading.version, 1.2);
    EXPECT_EQ(reading.expanded, "a 1\n");
    EXPECT_EQ(reading.tree, " a 1");
}

TEST(preprocess_version_line, it_may_run_to_the_end_of_the_text) {
    const Reading reading = reading_of("a 1\n#Brellwick_Serial_Version 1.1");
    EXPECT_EQ(reading.version, 1.1);
    EXPECT_EQ(reading.expanded, "a 1\n");
}

TEST(preprocess_version_line, a_file_that_holds_nothing_else_reads_as_an_empty_document) {
    const Reading reading = reading_of("#Brellwick_Serial_Version 1.1\n");
    EXPECT_TRUE(reading.result);
    EXPECT_EQ(reading.version, 1.1);
    EXPECT_EQ(reading.expanded, "");
    EXPECT_EQ(reading.tree, "");
    EXPECT_EQ(reading.messages, std::vector<std::string>{});
}

TEST(preprocess_version_line, the_last_of_several_counts_and_all_are_dropped) {
    const Reading reading =
        reading_of("#Brellwick_Serial_Version 1.2\na 1\n#Brellwick_Serial_Version 1.0\nb 2\n"
                   "#Brellwick_Serial_Version 1.1\n");
    EXPECT_EQ(reading.version, 1.1);
    EXPECT_EQ(reading.expanded, "a 1\nb 2\n");
}

TEST(preprocess_version_line, it_is_recognised_in_the_middle_of_a_line) {
    const Reading reading = reading_of("a 1 #Brellwick_Serial_Version 1.1 b 2\nc 3");
    EXPECT_EQ(reading.version, 1.1);
    EXPECT_EQ(reading.expanded, "a 1 c 3");
}

TEST(preprocess_version_line, it_is_recognised_in_the_middle_of_a_word) {
    EXPECT_EQ(reading_of("a 1x#Brellwick_Serial_Version 1.1\n").expanded, "a 1x");
}

TEST(preprocess_version_line, it_is_recognised_inside_a_string) {
    const Reading reading = reading_of("a \"x #Brellwick_Serial_Version 1.1\n// y\" // z");
    EXPECT_EQ(reading.version, 1.1);
    EXPECT_EQ(reading.expanded, "a \"x // y\" ");
}

TEST(preprocess_version_line, a_quote_in_it_opens_no_string) {
    EXPECT_EQ(reading_of("#Brellwick_Serial_Version 1.1 \"\na 1 // z").expanded, "a 1 ");
}

TEST(preprocess_version_line, it_is_not_recognised_inside_a_comment) {
    const Reading reading = reading_of("// #Brellwick_Serial_Version 1.1\na 1");
    EXPECT_EQ(reading.version, 1.0);
    EXPECT_EQ(reading.expanded, "a 1");
}

TEST(preprocess_version_line, the_blank_after_the_word_belongs_to_it) {
    const Reading reading = reading_of("#Brellwick_Serial_Version\t1.1\na 1 ");
    EXPECT_EQ(reading.version, 1.0);
    EXPECT_EQ(reading.tree, " #Brellwick_Serial_Version 1.1 a 1");
    EXPECT_EQ(reading_of("#Brellwick_Serial_Versions 1.1\n").version, 1.0);
    EXPECT_EQ(reading_of("#brellwick_Serial_Version 1.1\n").version, 1.0);
}

TEST(preprocess_version_line, the_version_is_the_leading_number) {
    EXPECT_EQ(reading_of("#Brellwick_Serial_Version   1.15 or so\na 1").version, 1.15);
    EXPECT_EQ(reading_of("#Brellwick_Serial_Version 3\r\na 1").version, 3.0);
}

TEST(preprocess_version_line, a_version_that_is_not_above_zero_makes_the_read_fail_without_a_message) {
    for (const char* text : {"#Brellwick_Serial_Version 0\na 1", "#Brellwick_Serial_Version one\na 1",
                             "#Brellwick_Serial_Version \na 1", "#Brellwick_Serial_Version -1\na 1"}) {
        const Reading reading = reading_of(text);
        EXPECT_FALSE(reading.result) << text;
        EXPECT_EQ(reading.tree, "") << text;
        EXPECT_EQ(reading.messages, std::vector<std::string>{}) << text;
    }
}

TEST(preprocess_version_line, a_later_version_replaces_one_that_is_not_above_zero) {
    EXPECT_TRUE(reading_of("#Brellwick_Serial_Version 0\n#Brellwick_Serial_Version 1.2\na 1").result);
}

TEST(preprocess_version_line, the_version_decides_how_strings_are_read) {
    EXPECT_EQ(reading_of("#Brellwick_Serial_Version 1.0\na \"x\\\\y\"\n").tree, R"( a "x\\\\y")");
    EXPECT_EQ(reading_of("#Brellwick_Serial_Version 1.1\na \"x\\\\y\"\n").tree, R"( a "x\\y")");
    EXPECT_EQ(reading_of("a \"x\\\\y\"\n").tree, R"( a "x\\\\y")");
}

TEST(preprocess_version_line, the_version_of_an_included_file_is_dropped_and_not_used) {
    const DocumentFolder folder;
    folder.write("inc.bkd", "#Brellwick_Serial_Version 1.1\nb 2\n");
    const Reading reading = folder.read_text("#Brellwick_Serial_Version 1.2\n#include \"inc.bkd\"\na 1\n");
    EXPECT_EQ(reading.version, 1.2);
    EXPECT_EQ(reading.expanded, "b 2\n\na 1\n");
    EXPECT_EQ(folder.read_text("#include \"inc.bkd\"\n").version, 1.0);
}

TEST(preprocess_version_line, an_included_version_that_is_zero_fails_like_any_include) {
    const DocumentFolder folder;
    folder.write("inc.bkd", "#Brellwick_Serial_Version 0\nb 2\n");
    const Reading reading = folder.read_text("#include \"inc.bkd\"\na 1\n");
    EXPECT_FALSE(reading.result);
    EXPECT_EQ(reading.tree, "");
}
