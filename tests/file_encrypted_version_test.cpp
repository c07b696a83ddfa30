#include "tests/support/enciphered_folder.h"
#include "tests/support/recording_progress.h"

#include <gtest/gtest.h>

#include <ctime>

namespace {

using Messages = std::vector<std::string>;

Reading reading_of(std::string_view text) {
    const EncipheredFolder folder;
    folder.write_enciphered("main.bkd", text, "key");
    Reading reading = folder.read_with_key("main.bkd", "key");
    EXPECT_TRUE(reading.result);
    return reading;
}

} // namespace

TEST(file_encrypted_version, a_text_without_one_is_of_version_1_0) {
    EXPECT_EQ(reading_of("a 1\n").version, 1.0);
}

TEST(file_encrypted_version, a_line_at_the_very_beginning_is_a_header_and_dropped) {
    const Reading reading = reading_of("#Brellwick_Serial_Version 1.1\na 1\n");
    EXPECT_EQ(reading.version, 1.1);
    EXPECT_EQ(reading.expanded, "a 1\n");
    EXPECT_EQ(reading.tree, " a 1");
}

TEST(file_encrypted_version, a_header_alone_is_an_empty_document) {
    const Reading reading = reading_of("#Brellwick_Serial_Version 1.1\n");
    EXPECT_EQ(reading.version, 1.1);
    EXPECT_EQ(reading.expanded, "");
    EXPECT_EQ(reading.tree, "");
}

TEST(file_encrypted_version, any_other_line_is_an_entry_that_gives_the_version) {
    for (const std::string text :
         {"\n#Brellwick_Serial_Version 1.1\na 1\n", "a 1\n#Brellwick_Serial_Version 1.1",
          " #Brellwick_Serial_Version 1.1\n", "a 1 #Brellwick_Serial_Version 1.1 2\n"}) {
        const Reading reading = reading_of(text);
        EXPECT_EQ(reading.version, 1.1) << text;
        EXPECT_EQ(reading.expanded, text);
        EXPECT_EQ(reading.messages, Messages{});
        EXPECT_NE(reading.tree.find(" #Brellwick_Serial_Version 1.1"), std::string::npos);
    }
}

TEST(file_encrypted_version, the_last_line_counts) {
    const std::string entries = "a 1\n#Brellwick_Serial_Version 1.0\n#Brellwick_Serial_Version 1.1\n";
    const Reading reading = reading_of("#Brellwick_Serial_Version 1.2\n" + entries);
    EXPECT_EQ(reading.version, 1.1);
    EXPECT_EQ(reading.expanded, entries);
    EXPECT_EQ(reading.tree, " a 1 #Brellwick_Serial_Version 1.0 #Brellwick_Serial_Version 1.1");
}

TEST(file_encrypted_version, many_in_one_line_take_time_in_proportion) {
    std::string text = "a 1";
    for (int i = 0; i < 100000; ++i) {
        text += " #Brellwick_Serial_Version 1.0";
    }
    text += " #Brellwick_Serial_Version 1.1";
    const EncipheredFolder folder;
    folder.write_enciphered("main.bkd", text, "key");
    ParserFile file(core(folder.path("main.bkd")));
    const std::clock_t start = std::clock();
    const Reading reading = folder.read_into(file, "", "key");
    // Searching the rest of the line for each version would take longer.
    EXPECT_LT(std::clock() - start, 5 * CLOCKS_PER_SEC);
    EXPECT_EQ(reading.version, 1.1);
    EXPECT_EQ(reading.expanded, text);
}

TEST(file_encrypted_version, a_second_line_after_the_header_is_an_entry) {
    const Reading reading = reading_of("#Brellwick_Serial_Version 1.2\n#Brellwick_Serial_Version 1.1\n");
    EXPECT_EQ(reading.version, 1.1);
    EXPECT_EQ(reading.tree, " #Brellwick_Serial_Version 1.1");
}

TEST(file_encrypted_version, an_entry_is_scanned_like_any_other_text) {
    const EncipheredFolder folder;
    folder.write("x.bkd", "b 2 c \"3\" ");
    folder.write_enciphered(
        "main.bkd", "\n#Brellwick_Serial_Version 1.1 // note\n \"x // y\" 0x00FF #include \"x.bkd\"", "key");
    const Reading reading = folder.read_with_key("main.bkd", "key");
    EXPECT_EQ(reading.version, 1.1);
    EXPECT_EQ(reading.expanded, "\n#Brellwick_Serial_Version 1.1  \"x // y\" 0x00FF b 2 c \"3\" ");
}

TEST(file_encrypted_version, a_quote_in_an_entry_opens_a_string) {
    EXPECT_EQ(reading_of("\n#Brellwick_Serial_Version 1.1 \"a // b\" // c\n").expanded,
              "\n#Brellwick_Serial_Version 1.1 \"a // b\" ");
}

TEST(file_encrypted_version, it_is_recognised_inside_a_string_which_stays_whole) {
    const Reading reading = reading_of("a \"x #Brellwick_Serial_Version 1.1 y\" b 2\n");
    EXPECT_EQ(reading.version, 1.1);
    EXPECT_EQ(reading.tree, " a \"x #Brellwick_Serial_Version 1.1 y\" b 2");
}

TEST(file_encrypted_version, a_line_in_a_comment_is_dropped_with_it) {
    const Reading reading = reading_of("a 1 // #Brellwick_Serial_Version 1.1\n");
    EXPECT_EQ(reading.version, 1.0);
    EXPECT_EQ(reading.expanded, "a 1 ");
}

TEST(file_encrypted_version, a_version_that_is_no_number_fails_the_read) {
    const EncipheredFolder folder;
    folder.write_enciphered("main.bkd", "\n#Brellwick_Serial_Version x\na 1\n", "key");
    EXPECT_FALSE(folder.read_with_key("main.bkd", "key").result);
    folder.write_enciphered("main.bkd", "#Brellwick_Serial_Version 0\na 1\n", "key");
    EXPECT_FALSE(folder.read_with_key("main.bkd", "key").result);
}

TEST(file_encrypted_version, the_version_of_an_entry_decides_how_strings_are_read) {
    EXPECT_EQ(reading_of("a \"x\\ty\"\n#Brellwick_Serial_Version 1.0\n").tree,
              " a \"x\\\\ty\" #Brellwick_Serial_Version 1.0");
    EXPECT_EQ(reading_of("a \"x\\ty\"\n#Brellwick_Serial_Version 1.1\n").tree,
              " a \"x\\ty\" #Brellwick_Serial_Version 1.1");
}

TEST(file_encrypted_version, a_line_of_an_included_file_is_dropped_and_its_version_not_used) {
    const EncipheredFolder folder;
    const std::string part = "b 2\n#Brellwick_Serial_Version 1.1\nc 3 ";
    for (const bool is_top_enciphered : {false, true}) {
        for (const bool is_part_enciphered : {false, true}) {
            const std::string top = "a 1 #include \"x.bkd\"";
            folder.write("main.bkd", is_top_enciphered ? cipher_reference::enciphered_file(top, "key") : top);
            folder.write("x.bkd", is_part_enciphered ? cipher_reference::enciphered_file(part, "key") : part);
            const Reading reading = folder.read_with_key("main.bkd", "key");
            EXPECT_TRUE(reading.result);
            EXPECT_EQ(reading.version, 1.0);
            EXPECT_EQ(reading.expanded, "a 1 b 2\nc 3 ");
        }
    }
}

TEST(file_encrypted_version, a_line_of_a_plain_file_is_dropped_after_an_enciphered_include) {
    const EncipheredFolder folder;
    folder.write("main.bkd", "#include \"x.bkd\"\n#Brellwick_Serial_Version 1.1\na 1 ");
    folder.write_enciphered("x.bkd", "b 2 ", "key");
    const Reading reading = folder.read_with_key("main.bkd", "key");
    EXPECT_EQ(reading.version, 1.1);
    EXPECT_EQ(reading.expanded, "b 2 \na 1 ");
}

TEST(file_encrypted_version, a_line_of_an_enciphered_file_is_an_entry_after_a_plain_include) {
    const EncipheredFolder folder;
    folder.write_enciphered("main.bkd", "#include \"x.bkd\"\n#Brellwick_Serial_Version 1.1\na 1 ", "key");
    folder.write("x.bkd", "b 2 ");
    const Reading reading = folder.read_with_key("main.bkd", "key");
    EXPECT_EQ(reading.version, 1.1);
    EXPECT_EQ(reading.expanded, "b 2 \n#Brellwick_Serial_Version 1.1\na 1 ");
}

TEST(file_encrypted_version, the_first_entry_of_a_written_document_reads_back) {
    const EncipheredFolder folder;
    ParserFile file(CoreString{});
    file.get_root().add_entry("#Brellwick_Serial_Version", 0, 0)->add_double(1.0);
    file.get_root().add_entry("a", 0, 0)->add_int(1);
    ASSERT_TRUE(file.write(ParserFile::MODE_TEXT, folder.core_path("out.bkd"), "key"));
    const Reading reading = folder.read_with_key("out.bkd", "key");
    EXPECT_EQ(reading.version, 1.2);
    EXPECT_EQ(reading.tree, " #Brellwick_Serial_Version 1.2 a 1");
}

TEST(file_encrypted_version, more_values_of_the_entry_read_back) {
    const EncipheredFolder folder;
    ParserFile file(CoreString{});
    ParserEntry* const version = file.get_root().add_entry("#Brellwick_Serial_Version", 0, 0);
    version->add_double(1.0);
    version->add_string("x // y");
    version->add_group(nullptr)->add_entry("a", 0, 0)->add_int(1);
    ASSERT_TRUE(file.write(ParserFile::MODE_TEXT, folder.core_path("out.bkd"), "key"));
    EXPECT_EQ(folder.read_with_key("out.bkd", "key").tree,
              " #Brellwick_Serial_Version 1.2 \"x // y\" { a 1 }");
}

TEST(file_encrypted_version, the_bytes_of_an_entry_are_steps_and_those_of_a_header_are_not) {
    const EncipheredFolder folder;
    const std::string line = "#Brellwick_Serial_Version 1.1\n";
    folder.write_enciphered("main.bkd", line + line, "key");
    RecordingProgress progress;
    ParserFile file(CoreString{});
    EXPECT_TRUE(folder.read_into(file, "main.bkd", "key", &progress).result);
    std::vector<unsigned int> expected;
    for (std::size_t i = line.size() + 1; i <= 2 * line.size(); ++i) {
        expected.push_back(static_cast<unsigned int>(i));
    }
    EXPECT_EQ(progress.steps, expected);
}
