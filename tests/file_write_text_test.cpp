#include "tests/support/document_folder.h"

#include <gtest/gtest.h>

namespace {

using Messages = std::vector<std::string>;

/// A file object with an entry a that has the value 1.
class Writable : public testing::Test {
protected:
    Writable() : file(CoreString{}) { file.get_root().add_entry("a", 0, 0)->add_int(1); }

    std::string write_and_read_back() {
        EXPECT_TRUE(file.write(ParserFile::MODE_TEXT, folder.core_path("out.bkd"), ""));
        EXPECT_TRUE(log.is_empty());
        return folder.read("out.bkd");
    }

    const DocumentFolder folder;
    RecordingLog log;
    ParserFile file;
};

} // namespace

using file_write_text = Writable;

TEST_F(file_write_text, the_version_line_comes_first) {
    EXPECT_EQ(write_and_read_back(), on_disk("#Brellwick_Serial_Version 1.2\n\na 1"));
}

TEST_F(file_write_text, an_empty_document_is_the_version_line) {
    file.clear();
    EXPECT_EQ(write_and_read_back(), on_disk("#Brellwick_Serial_Version 1.2\n"));
}

TEST_F(file_write_text, the_root_is_printed_pretty_without_its_name) {
    file.get_root().add_group("b")->add_entry("c", 0, 0)->add_string("x");
    EXPECT_EQ(write_and_read_back(), on_disk("#Brellwick_Serial_Version 1.2\n\na 1\nb {\n    c \"x\"\n}"));
}

TEST_F(file_write_text, the_version_line_does_not_become_part_of_the_document) {
    write_and_read_back();
    EXPECT_EQ(file.get_root().get_entries().get_count(), 1u);
    EXPECT_EQ(file.get_root().get_keyword("#Brellwick_Serial_Version"), nullptr);
}

TEST_F(file_write_text, what_was_written_reads_back) {
    file.get_root().add_group("b")->add_entry("c", 0, 0)->add_string("x\ty \"z\" // w");
    write_and_read_back();
    const Reading reading = folder.read_document("out.bkd");
    EXPECT_TRUE(reading.result);
    EXPECT_EQ(reading.version, 1.2);
    EXPECT_EQ(reading.tree, R"( a 1 b { c "x\ty \"z\" // w" })");
    EXPECT_EQ(reading.messages, Messages{});
}

TEST_F(file_write_text, the_version_is_1_2_whatever_was_read) {
    folder.write("old.bkd", "#Brellwick_Serial_Version 1.0\nb 2\n");
    ASSERT_TRUE(file.read(folder.core_path("old.bkd"), "", nullptr));
    EXPECT_EQ(write_and_read_back(), on_disk("#Brellwick_Serial_Version 1.2\n\na 1\nb 2"));
    EXPECT_EQ(file.get_serial_version().get_value(), 1.0);
}

TEST_F(file_write_text, the_version_is_1_2_whatever_the_default_is) {
    default_parser_serial_version = CoreVersion(1.5);
    const std::string bytes = write_and_read_back();
    default_parser_serial_version = CoreVersion(1.2);
    EXPECT_EQ(bytes, on_disk("#Brellwick_Serial_Version 1.2\n\na 1"));
}

TEST_F(file_write_text, a_version_entry_of_the_document_takes_the_place_of_the_version_line) {
    ParserEntry* version = file.get_root().add_entry("#Brellwick_Serial_Version", 0, 0);
    version->add_double(1.0);
    version->add_string("more");
    EXPECT_EQ(write_and_read_back(), on_disk("\na 1\n#Brellwick_Serial_Version 1.2 \"more\""));
    EXPECT_EQ(version->get_double(0), 1.2);
    EXPECT_EQ(folder.read_document("out.bkd").version, 1.2);
}

TEST_F(file_write_text, a_version_entry_of_another_type_becomes_a_double) {
    ParserEntry* version = file.get_root().add_entry("#Brellwick_Serial_Version", 0, 0);
    version->add_string("old");
    EXPECT_EQ(write_and_read_back(), on_disk("\na 1\n#Brellwick_Serial_Version 1.2"));
    EXPECT_EQ(version->get_value_type(0), ParserValue::TYPE_DOUBLE);
}

TEST_F(file_write_text, a_version_entry_without_values_gets_one) {
    ParserEntry* version = file.get_root().add_entry("#Brellwick_Serial_Version", 0, 0);
    EXPECT_EQ(write_and_read_back(), on_disk("\na 1\n#Brellwick_Serial_Version 1.2"));
    ASSERT_EQ(version->get_value_count(), 1u);
    EXPECT_EQ(version->get_double(0), 1.2);
}

TEST_F(file_write_text, the_string_of_the_version_entry_may_be_the_name) {
    const CoreString name = folder.core_path("a_name_that_stands_in_a_block.bkd");
    file.get_root().add_entry("#Brellwick_Serial_Version", 0, 0)->add_string(name);
    EXPECT_TRUE(file.write(ParserFile::MODE_TEXT,
                           file.get_root().get_keyword("#Brellwick_Serial_Version")->get_string(0), ""));
    EXPECT_TRUE(log.is_empty());
    EXPECT_EQ(folder.read("a_name_that_stands_in_a_block.bkd"),
              on_disk("\na 1\n#Brellwick_Serial_Version 1.2"));
}

TEST_F(file_write_text, the_string_of_the_version_entry_may_be_the_key) {
    for (const char* key : {"short", "a key that stands in a block of its own"}) {
        file.get_root().remove_entry("#Brellwick_Serial_Version");
        const ParserEntry* const entry = file.get_root().add_entry("#Brellwick_Serial_Version", 0, 0);
        const_cast<ParserEntry*>(entry)->add_string(key);
        EXPECT_TRUE(file.write(ParserFile::MODE_TEXT, folder.core_path("out.bkd"), entry->get_string(0)));
        ParserFile again(CoreString{});
        EXPECT_TRUE(again.read(folder.core_path("out.bkd"), key, nullptr));
        EXPECT_EQ(again.get_root().get_entry("a")->get_int(0), 1);
    }
}

TEST_F(file_write_text, the_first_of_several_version_entries_is_set) {
    file.get_root().add_entry("#Brellwick_Serial_Version", 0, 0)->add_int(7);
    file.get_root().add_entry("#Brellwick_Serial_Version", 0, 0)->add_int(8);
    EXPECT_EQ(write_and_read_back(),
              on_disk("\na 1\n#Brellwick_Serial_Version 1.2\n#Brellwick_Serial_Version 8"));
}

TEST_F(file_write_text, the_name_is_stored) {
    write_and_read_back();
    EXPECT_EQ(plain(file.get_filename()), folder.path("out.bkd"));
}

TEST_F(file_write_text, without_a_name_the_stored_one_is_written) {
    file.set_filename(folder.core_path("stored.bkd"));
    EXPECT_TRUE(file.write(ParserFile::MODE_TEXT, "", ""));
    EXPECT_EQ(folder.read("stored.bkd"), on_disk("#Brellwick_Serial_Version 1.2\n\na 1"));
}

TEST_F(file_write_text, a_name_that_begins_with_a_nul_is_no_name) {
    file.set_filename(folder.core_path("stored.bkd"));
    EXPECT_TRUE(file.write(ParserFile::MODE_TEXT, CoreString("\0x", 2), ""));
    EXPECT_TRUE(folder.exists("stored.bkd"));
    EXPECT_EQ(plain(file.get_filename()), folder.path("stored.bkd"));
}

TEST_F(file_write_text, a_key_that_begins_with_a_nul_is_no_key) {
    EXPECT_TRUE(file.write(ParserFile::MODE_TEXT, folder.core_path("out.bkd"), CoreString("\0x", 2)));
    EXPECT_EQ(folder.read("out.bkd"), on_disk("#Brellwick_Serial_Version 1.2\n\na 1"));
}

TEST_F(file_write_text, an_old_file_is_replaced_whole) {
    folder.write("out.bkd", std::string(10000, 'x'));
    EXPECT_EQ(write_and_read_back(), on_disk("#Brellwick_Serial_Version 1.2\n\na 1"));
    EXPECT_EQ(folder.count(), 1u);
}

TEST_F(file_write_text, bytes_of_strings_are_written_exactly) {
    file.clear();
    std::string text;
    for (int code = 0; code < 256; ++code) {
        text += static_cast<char>(code);
    }
    file.get_root().add_entry("a", 0, 0)->add_string(core(text));
    write_and_read_back();
    ParserFile again(CoreString{});
    ASSERT_TRUE(again.read(folder.core_path("out.bkd"), "", nullptr));
    EXPECT_EQ(plain(again.get_root().get_entry("a")->get_string(0)), text);
}

TEST_F(file_write_text, an_unknown_mode_is_refused_with_a_message) {
    EXPECT_FALSE(file.write(static_cast<ParserFile::Mode>(2), folder.core_path("out.bkd"), ""));
    EXPECT_EQ(log.messages, (std::vector<LoggedMessage>{{1, "ParserFile.write: Unknown file mode\n"}}));
    EXPECT_EQ(folder.count(), 0u);
    EXPECT_EQ(plain(file.get_filename()), folder.path("out.bkd"));
}

TEST_F(file_write_text, an_unknown_mode_leaves_an_old_file_alone) {
    folder.write("out.bkd", "old");
    EXPECT_FALSE(file.write(static_cast<ParserFile::Mode>(0xFFFFFFFFu), folder.core_path("out.bkd"), ""));
    EXPECT_EQ(folder.read("out.bkd"), "old");
}
