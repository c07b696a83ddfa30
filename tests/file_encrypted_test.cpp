#include "tests/support/enciphered_folder.h"
#include "tests/support/full_disk.h"
#include "tests/support/random_tree.h"
#include "tests/support/tree_equal.h"

#include <gtest/gtest.h>

namespace {

using Messages = std::vector<std::string>;

const char* const version_name = "#Brellwick_Serial_Version";

/// A file object with an entry a that has the value 1.
class FileEncrypted : public testing::Test {
protected:
    FileEncrypted() : file(CoreString{}) { file.get_root().add_entry("a", 0, 0)->add_int(1); }

    /// The deciphered content of the file. It must be the whole file.
    std::string write_and_decipher(std::string_view key = "key", unsigned int mode = 0) {
        EXPECT_TRUE(file.write(static_cast<ParserFile::Mode>(mode), folder.core_path("out.bkd"), core(key)));
        EXPECT_TRUE(log.is_empty());
        const std::string bytes = folder.read("out.bkd");
        CoreString text;
        file.get_text(text);
        EXPECT_EQ(hex(bytes), hex(cipher_reference::enciphered_file(plain(text), key)));
        return plain(text);
    }

    const EncipheredFolder folder;
    RecordingLog log;
    ParserFile file;
};

} // namespace

using file_encrypted = FileEncrypted;

TEST_F(file_encrypted, the_magic_is_followed_by_the_enciphered_text) {
    EXPECT_EQ(write_and_decipher(), "\na 1\n#Brellwick_Serial_Version 1.2");
}

TEST_F(file_encrypted, the_mode_does_not_matter) {
    const std::string text = write_and_decipher("key", 0);
    EXPECT_EQ(write_and_decipher("key", 1), text);
    EXPECT_EQ(write_and_decipher("key", 2), text);
    EXPECT_EQ(write_and_decipher("key", 0xFFFFFFFF), text);
}

TEST_F(file_encrypted, the_key_may_hold_any_byte_after_the_first) {
    write_and_decipher("\x80\xFF\x01");
    write_and_decipher({"a\0b", 3});
}

TEST_F(file_encrypted, a_key_that_begins_with_a_nul_is_no_key) {
    EXPECT_TRUE(file.write(ParserFile::MODE_TEXT, folder.core_path("out.bkd"), CoreString("\0key", 4)));
    EXPECT_EQ(folder.read("out.bkd"), on_disk("#Brellwick_Serial_Version 1.2\n\na 1"));
}

TEST_F(file_encrypted, the_version_becomes_an_entry_of_the_document_at_its_end) {
    write_and_decipher();
    ASSERT_EQ(file.get_root().get_entries().get_count(), 2u);
    const ParserEntry* const version = file.get_root().get_keyword(version_name);
    ASSERT_EQ(version, file.get_root().get_entries()[1]);
    EXPECT_EQ(version->get_type(), ParserEntry::TYPE_KEYWORD);
    EXPECT_EQ(version->get_line(), 0u);
    EXPECT_EQ(version->get_column(), 0u);
    ASSERT_EQ(version->get_value_count(), 1u);
    EXPECT_EQ(version->get_value_type(0), ParserValue::TYPE_DOUBLE);
    EXPECT_EQ(version->get_double(0), 1.2);
}

TEST_F(file_encrypted, the_version_entry_is_added_once) {
    const std::string text = write_and_decipher();
    EXPECT_EQ(write_and_decipher(), text);
}

TEST_F(file_encrypted, a_version_entry_that_is_there_gets_the_version_as_its_first_value) {
    file.clear();
    ParserEntry* const version = file.get_root().add_entry(version_name, 0, 0);
    version->add_string("old");
    version->add_int(7);
    file.get_root().add_entry("a", 0, 0)->add_int(1);
    EXPECT_EQ(write_and_decipher(), "\n#Brellwick_Serial_Version 1.2 7\na 1");
    EXPECT_EQ(version->get_value_type(0), ParserValue::TYPE_DOUBLE);
}

TEST_F(file_encrypted, a_version_entry_without_values_gets_one) {
    file.get_root().add_entry(version_name, 0, 0);
    EXPECT_EQ(write_and_decipher(), "\na 1\n#Brellwick_Serial_Version 1.2");
}

TEST_F(file_encrypted, the_version_is_1_2_whatever_the_default_is_and_whatever_was_read) {
    folder.write("old.bkd", "#Brellwick_Serial_Version 1.0\nb 2\n");
    ASSERT_TRUE(file.read(folder.core_path("old.bkd"), "", nullptr));
    default_parser_serial_version = CoreVersion(1.5);
    const std::string text = write_and_decipher();
    default_parser_serial_version = CoreVersion(1.2);
    EXPECT_EQ(text, "\na 1\nb 2\n#Brellwick_Serial_Version 1.2");
}

TEST_F(file_encrypted, an_empty_document_holds_the_version_alone) {
    file.clear();
    EXPECT_EQ(write_and_decipher(), "\n#Brellwick_Serial_Version 1.2");
}

TEST_F(file_encrypted, line_ends_are_single_line_feeds_on_every_platform) {
    file.get_root().add_group("b")->add_entry("c", 0, 0)->add_string("x\ny");
    EXPECT_EQ(write_and_decipher(), "\na 1\nb {\n    c \"x\\ny\"\n}\n#Brellwick_Serial_Version 1.2");
}

TEST_F(file_encrypted, the_name_is_stored) {
    write_and_decipher();
    EXPECT_EQ(plain(file.get_filename()), folder.path("out.bkd"));
    EXPECT_TRUE(file.write(ParserFile::MODE_TEXT, "", "key"));
    EXPECT_EQ(folder.count(), 1u);
}

TEST_F(file_encrypted, an_old_file_is_replaced_whole) {
    folder.write("out.bkd", std::string(10000, 'x'));
    write_and_decipher();
    EXPECT_EQ(folder.count(), 1u);
}

TEST_F(file_encrypted, a_file_that_cannot_be_opened_is_a_failure_without_a_message) {
    EXPECT_FALSE(file.write(ParserFile::MODE_TEXT, folder.core_path("missing/out.bkd"), "key"));
    EXPECT_TRUE(log.is_empty());
    EXPECT_EQ(file.get_root().get_keyword(version_name), nullptr) << "the document stays as it was";
}

TEST_F(file_encrypted, a_short_write_is_logged_and_the_result_is_true_all_the_same) {
    folder.write("out.bkd", "the old document");
    const FullDisk disk;
    EXPECT_TRUE(file.write(ParserFile::MODE_TEXT, folder.core_path("out.bkd"), "key"));
    EXPECT_EQ(log.take(), (std::vector<LoggedMessage>{{1, "ParserFile.write: Can't save project '" +
                                                              folder.path("out.bkd") + "'.\n"}}));
    EXPECT_TRUE(file.write(ParserFile::MODE_TEXT, "", "key"));
    EXPECT_EQ(log.take(), (std::vector<LoggedMessage>{{1, "ParserFile.write: Can't save project ''.\n"}}));
    EXPECT_EQ(folder.read("out.bkd"), "the old document");
    EXPECT_EQ(folder.count(), 1u);
    EXPECT_NE(file.get_root().get_keyword(version_name), nullptr);
}

TEST_F(file_encrypted, writing_does_not_make_a_file_an_enciphered_one) {
    write_and_decipher();
    EXPECT_FALSE(file.is_encrypted());
}

TEST_F(file_encrypted, what_was_written_reads_back_with_its_version_entry) {
    file.get_root().add_group("b")->add_entry("c", 0, 0)->add_string("x\ty \"z\" // w");
    const std::string text = write_and_decipher();
    ParserFile again(CoreString{});
    const Reading reading = folder.read_into(again, "out.bkd", "key");
    EXPECT_TRUE(reading.result);
    EXPECT_EQ(reading.messages, Messages{});
    EXPECT_EQ(reading.version, 1.2);
    EXPECT_EQ(reading.expanded, text);
    EXPECT_TRUE(again.is_encrypted());
    EXPECT_EQ(tree_difference(file.get_root(), again.get_root()), "");
    EXPECT_EQ(reading.dependencies, Messages{}) << "a file does not depend on itself";
}

TEST_F(file_encrypted, an_empty_document_reads_back_with_its_version_entry) {
    file.clear();
    write_and_decipher();
    const Reading reading = folder.read_with_key("out.bkd", "key");
    EXPECT_TRUE(reading.result);
    EXPECT_EQ(reading.tree, " #Brellwick_Serial_Version 1.2");
    EXPECT_EQ(reading.messages, Messages{});
}

TEST_F(file_encrypted, reading_and_writing_again_gives_the_same_bytes) {
    write_and_decipher();
    const std::string bytes = folder.read("out.bkd");
    ParserFile again(CoreString{});
    ASSERT_TRUE(folder.read_into(again, "out.bkd", "key").result);
    EXPECT_TRUE(again.write(ParserFile::MODE_TEXT, folder.core_path("again.bkd"), "key"));
    EXPECT_EQ(hex(folder.read("again.bkd")), hex(bytes));
}

TEST_F(file_encrypted, a_document_read_enciphered_can_be_written_plain) {
    write_and_decipher();
    ParserFile again(CoreString{});
    ASSERT_TRUE(folder.read_into(again, "out.bkd", "key").result);
    EXPECT_TRUE(again.write(ParserFile::MODE_TEXT, folder.core_path("plain.bkd"), ""));
    EXPECT_EQ(folder.read("plain.bkd"), on_disk("\na 1\n#Brellwick_Serial_Version 1.2"));
}

TEST_F(file_encrypted, a_key_of_the_same_sum_reads_it_too) {
    write_and_decipher("lantern");
    EXPECT_TRUE(folder.read_with_key("out.bkd", "nretnal").result);
}

TEST_F(file_encrypted, entries_are_appended_to_those_of_the_root) {
    write_and_decipher();
    const Reading reading = folder.read_into(file, "", "key");
    EXPECT_EQ(reading.tree, " a 1 #Brellwick_Serial_Version 1.2 a 1 #Brellwick_Serial_Version 1.2");
}

TEST_F(file_encrypted, random_documents_read_back) {
    for (unsigned int seed = 0; seed < 50; ++seed) {
        file.clear();
        RandomTree(seed, RandomTree::text_form).fill(file.get_root());
        write_and_decipher();
        CoreString compact;
        file.get_root().get_text(compact, false, false, 1);
        const Reading reading = folder.read_with_key("out.bkd", "key");
        EXPECT_EQ(reading.messages, Messages{}) << seed;
        EXPECT_EQ(reading.tree, plain(compact)) << seed;
    }
}
