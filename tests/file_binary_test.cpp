#include "tests/support/binary_form.h"
#include "tests/support/document_folder.h"
#include "tests/support/full_disk.h"
#include "tests/support/random_tree.h"
#include "tests/support/tree_equal.h"

#include <gtest/gtest.h>

namespace {

using namespace binary_form;
using Messages = std::vector<LoggedMessage>;

const char* const too_short = "ParserFile.set_binary: data too short\n";
const char* const unknown_tag = "ParserFile.set_binary: Unknown data tag\n";
const char* const unknown_format = "ParserFile.set_binary: Unknown format\n";
const char* const too_large = "ParserGroup.set_binary: ParserGroup size larger than the given data\n";

/// A file object with an entry a that has the value 1.
class FileBinary : public testing::Test {
protected:
    FileBinary() : file(CoreString{}) { file.get_root().add_entry("a", 0, 0)->add_int(1); }

    bool set(std::string_view bytes) { return file.set_binary(buffer(bytes)); }

    const DocumentFolder folder;
    RecordingLog log;
    ParserFile file;
};

} // namespace

using file_binary = FileBinary;

TEST_F(file_binary, an_empty_file_is_twelve_bytes) {
    EXPECT_EQ(hex(ParserFile(CoreString{}).get_binary()), "55 44 46 53 00 00 00 00 00 00 00 00");
}

TEST_F(file_binary, the_root_follows_the_tag_without_its_name) {
    EXPECT_EQ(hex(file.get_binary()), hex(binary_form::file(entry("a", int_value(1)))));
}

TEST_F(file_binary, entries_are_appended_to_those_of_the_root) {
    EXPECT_TRUE(set(binary_form::file(entry("b", int_value(2)))));
    EXPECT_TRUE(log.is_empty());
    EXPECT_EQ(written(file.get_root()), "root { a 1 b 2 }");
    EXPECT_EQ(file.get_root().get_entry_count(), 2u);
}

TEST_F(file_binary, an_empty_document_is_read) {
    EXPECT_TRUE(set(binary_form::file("")));
    EXPECT_TRUE(log.is_empty());
    EXPECT_EQ(written(file.get_root()), "root { a 1 }");
}

TEST_F(file_binary, data_of_less_than_nine_bytes_are_too_short) {
    for (std::size_t size = 0; size < 9; ++size) {
        EXPECT_FALSE(set(binary_form::file("").substr(0, size)));
        EXPECT_EQ(log.take(), (Messages{{2, too_short}, {2, unknown_format}})) << size;
    }
    EXPECT_FALSE(set("12345678"));
    EXPECT_EQ(log.take(), (Messages{{2, too_short}, {2, unknown_format}}));
}

TEST_F(file_binary, nine_bytes_are_enough_to_be_handed_to_the_group) {
    for (std::size_t size = 9; size < 12; ++size) {
        EXPECT_FALSE(set(binary_form::file("").substr(0, size)));
        EXPECT_EQ(log.take(), one_warning(too_large)) << size;
    }
}

TEST_F(file_binary, another_tag_is_refused) {
    for (const char* tag : {"udfs", "UDF ", "\x55\x44\x46\xD3", "KWBF", "KWAF"}) {
        EXPECT_FALSE(set(tag + size_field(0)));
        EXPECT_EQ(log.take(), (Messages{{2, unknown_tag}, {2, unknown_format}})) << tag;
    }
    EXPECT_EQ(written(file.get_root()), "root { a 1 }");
}

TEST_F(file_binary, nothing_is_composed_below_verbosity_2) {
    RecordingLog errors_only(1);
    EXPECT_FALSE(set("short"));
    EXPECT_FALSE(set("another tag"));
    EXPECT_TRUE(errors_only.is_empty());
}

TEST_F(file_binary, bytes_after_the_root_are_ignored) {
    EXPECT_TRUE(set(binary_form::file(entry("b", int_value(2))) + "rest"));
    EXPECT_EQ(written(file.get_root()), "root { a 1 b 2 }");
}

TEST_F(file_binary, what_was_read_before_a_failure_stays) {
    EXPECT_FALSE(set(binary_form::file(entry("b", int_value(2)) + entry("c", word_value()))));
    EXPECT_EQ(written(file.get_root()), "root { a 1 b 2 }");
}

TEST_F(file_binary, random_documents_are_written_as_described_and_come_back) {
    for (unsigned int seed = 1000; seed < 1200; ++seed) {
        file.clear();
        RandomTree(seed).fill(file.get_root());
        const CoreVector<char> bytes = file.get_binary();
        ASSERT_EQ(hex(bytes), hex(binary_form::file(entries_of(file.get_root())))) << seed;
        ParserFile again(CoreString{});
        EXPECT_TRUE(again.set_binary(bytes));
        EXPECT_EQ(tree_difference(file.get_root(), again.get_root()), "") << seed;
    }
    EXPECT_TRUE(log.is_empty());
}

TEST_F(file_binary, reading_changes_neither_version_nor_storage_nor_name) {
    file.set_filename("name.bkd");
    EXPECT_TRUE(set(binary_form::file("")));
    EXPECT_EQ(file.get_serial_version().get_value(), 1.2);
    EXPECT_FALSE(file.is_encrypted());
    EXPECT_EQ(plain(file.get_filename()), "name.bkd");
}

TEST_F(file_binary, the_binary_mode_writes_these_bytes) {
    EXPECT_TRUE(file.write(ParserFile::MODE_BINARY, folder.core_path("out.udfs"), ""));
    EXPECT_TRUE(log.is_empty());
    EXPECT_EQ(hex(folder.read("out.udfs")), hex(binary_form::file(entry("a", int_value(1)))));
    EXPECT_EQ(plain(file.get_filename()), folder.path("out.udfs"));
}

TEST_F(file_binary, the_binary_mode_adds_no_version) {
    file.get_root().add_entry("#Brellwick_Serial_Version", 0, 0)->add_double(1.0);
    EXPECT_TRUE(file.write(ParserFile::MODE_BINARY, folder.core_path("out.udfs"), ""));
    EXPECT_EQ(hex(folder.read("out.udfs")),
              hex(binary_form::file(entry("a", int_value(1)) +
                                    entry("#Brellwick_Serial_Version", double_value(1.0)))));
}

TEST_F(file_binary, line_feeds_are_written_as_they_are) {
    file.clear();
    file.get_root().add_entry("a", 0, 0)->add_string("1\n2\r\n3\x1A");
    EXPECT_TRUE(file.write(ParserFile::MODE_BINARY, folder.core_path("out.udfs"), ""));
    EXPECT_EQ(hex(folder.read("out.udfs")),
              hex(binary_form::file(entry("a", string_value("1\n2\r\n3\x1A")))));
}

TEST_F(file_binary, without_a_name_the_stored_one_is_written) {
    file.set_filename(folder.core_path("stored.udfs"));
    EXPECT_TRUE(file.write(ParserFile::MODE_BINARY, "", ""));
    EXPECT_EQ(folder.read("stored.udfs"), bytes_of(file.get_binary()));
}

TEST_F(file_binary, an_old_file_is_replaced_whole) {
    folder.write("out.udfs", std::string(10000, 'x'));
    EXPECT_TRUE(file.write(ParserFile::MODE_BINARY, folder.core_path("out.udfs"), ""));
    EXPECT_EQ(folder.read("out.udfs"), bytes_of(file.get_binary()));
    EXPECT_EQ(folder.count(), 1u);
}

TEST_F(file_binary, what_was_written_comes_back_from_its_bytes) {
    EXPECT_TRUE(file.write(ParserFile::MODE_BINARY, folder.core_path("out.udfs"), ""));
    ParserFile again(CoreString{});
    EXPECT_TRUE(again.set_binary(buffer(folder.read("out.udfs"))));
    EXPECT_EQ(tree_difference(file.get_root(), again.get_root()), "");
}

TEST_F(file_binary, a_key_goes_before_the_mode) {
    EXPECT_TRUE(file.write(ParserFile::MODE_BINARY, folder.core_path("out"), "key"));
    EXPECT_EQ(folder.read("out").substr(0, 4), "KWBF");
}

TEST_F(file_binary, a_key_that_begins_with_a_nul_is_no_key) {
    EXPECT_TRUE(file.write(ParserFile::MODE_BINARY, folder.core_path("out"), CoreString("\0x", 2)));
    EXPECT_EQ(folder.read("out"), bytes_of(file.get_binary()));
}

TEST_F(file_binary, a_file_that_cannot_be_opened_is_a_failure_without_a_message) {
    EXPECT_FALSE(file.write(ParserFile::MODE_BINARY, folder.core_path("missing/out.udfs"), ""));
    EXPECT_TRUE(log.is_empty());
}

TEST_F(file_binary, a_short_write_is_logged_and_the_result_is_true_all_the_same) {
    folder.write("out.udfs", "the old document");
    const FullDisk disk;
    EXPECT_TRUE(file.write(ParserFile::MODE_BINARY, folder.core_path("out.udfs"), ""));
    EXPECT_EQ(log.take(),
              (Messages{{1, "ParserFile.write: Can't save project '" + folder.path("out.udfs") + "'.\n"}}));
    EXPECT_TRUE(file.write(ParserFile::MODE_BINARY, "", ""));
    EXPECT_EQ(log.take(), (Messages{{1, "ParserFile.write: Can't save project ''.\n"}}));
    EXPECT_EQ(folder.read("out.udfs"), "the old document");
    EXPECT_EQ(folder.count(), 1u);
}

TEST_F(file_binary, reading_a_file_does_not_recognise_it) {
    EXPECT_TRUE(file.write(ParserFile::MODE_BINARY, folder.core_path("out.udfs"), ""));
    const Reading reading = folder.read_document("out.udfs");
    EXPECT_TRUE(reading.result);
    EXPECT_EQ(reading.version, 1.0);
    EXPECT_EQ(reading.expanded, folder.read("out.udfs"));
    EXPECT_FALSE(reading.messages.empty());
}
