#include "tests/support/archive_form.h"
#include "tests/support/document_folder.h"
#include "tests/support/golden.h"
#include "tests/support/recording_log.h"

#include <gtest/gtest.h>

namespace {

using Messages = std::vector<std::string>;

/// The document that most of the files contain, on one line.
const std::string scene = " name \"harbour\" #unit \"metre\" count 3 height -12.5 visible yes hidden no"
                          " tags \"a b\" \"tab\\there\" \"quote \\\" and \\\\ slash\" \"h\xC3\xA9\""
                          " bytes 0x00FF7F80FE010000 nothing <empty> lamp<light> 1 points[3] 1 2 3 open[] 1"
                          " colour(1, 0.5, 0.25) reset() group { inner { depth 2 } after \"x\" } empty { }";

std::string compact(const ParserGroup& group) {
    CoreString text;
    group.get_text(text, false, false, 1);
    return plain(text);
}

/// Reads a golden file into a document, and keeps the messages.
class Golden : public testing::Test {
protected:
    Golden() : file(CoreString{}) {}

    bool read(std::string_view name, const CoreString& key = "lantern") {
        return file.read(core(golden::path(name)), key, nullptr);
    }
    bool set_binary(std::string_view name) { return file.set_binary(buffer(golden::bytes(name))); }
    bool set_digits(std::string_view digits) {
        return file.get_root().set_encrypted_text(core(digits), "lantern");
    }
    std::string load(std::string_view name) {
        return plain(ParserImpl::load_archive(archive, core(golden::path(name)), nullptr));
    }
    std::string tree() const { return compact(file.get_root()); }
    Messages messages() {
        Messages texts;
        for (const LoggedMessage& message : log.take()) {
            EXPECT_EQ(message.level, 2);
            texts.push_back(message.text);
        }
        return texts;
    }

    const ScratchFolder folder;
    RecordingLog log;
    ParserFile file;
    ParserArchive archive;
};

} // namespace

using golden_text = Golden;
using golden_binary = Golden;
using golden_enciphered = Golden;
using golden_hexadecimal = Golden;
using golden_archive = Golden;

TEST_F(golden_text, reads_and_is_written_the_same) {
    const char* const name = "text_reads_and_is_written_the_same.bkd";
    EXPECT_TRUE(read(name));
    EXPECT_EQ(messages(), Messages{});
    EXPECT_EQ(file.get_serial_version().get_value(), 1.2);
    EXPECT_EQ(tree(), scene);
    EXPECT_TRUE(file.write(ParserFile::MODE_TEXT, folder.core_path("out"), ""));
    EXPECT_EQ(folder.read("out"), on_disk(golden::bytes(name)));
}

TEST_F(golden_text, of_an_old_version_has_no_escapes) {
    EXPECT_TRUE(read("old_text_has_no_escapes.bkd"));
    EXPECT_EQ(file.get_serial_version().get_value(), 1.0);
    EXPECT_EQ(plain(file.get_root().get_entry("a")->get_string(0)), "tab\\there");
}

TEST_F(golden_binary, reads_and_is_written_the_same) {
    const char* const name = "binary_reads_and_is_written_the_same.udfs";
    EXPECT_TRUE(set_binary(name));
    EXPECT_EQ(messages(), Messages{});
    EXPECT_EQ(tree(),
              " name \"harbour\" #unit \"metre\" count 3 height -12.5 visible yes hidden no letter 65 -1"
              " tags \"a b\" \"tab\\there\" \"quote \\\" and \\\\ slash\" \"h\xC3\xA9\" \"\""
              " bytes 0x00FF7F80FE010000 0x00000000 nothing <empty>"
              " group { inner { depth 2 } after \"x\" } -2147483648 empty { }");
    EXPECT_EQ(hex(file.get_binary()), hex(golden::bytes(name)));
    EXPECT_TRUE(file.write(ParserFile::MODE_BINARY, folder.core_path("out"), ""));
    EXPECT_EQ(hex(folder.read("out")), hex(golden::bytes(name)));
}

TEST_F(golden_binary, of_nothing_is_twelve_bytes) {
    const char* const name = "binary_of_nothing_is_twelve_bytes.udfs";
    EXPECT_TRUE(set_binary(name));
    EXPECT_EQ(tree(), "");
    EXPECT_EQ(hex(file.get_binary()), hex(golden::bytes(name)));
}

TEST_F(golden_binary, of_nine_bytes_is_larger_than_the_data) {
    EXPECT_FALSE(set_binary("binary_of_nine_bytes_is_larger_than_the_data.udfs"));
    EXPECT_EQ(messages(), Messages{"ParserGroup.set_binary: ParserGroup size larger than the given data\n"});
}

TEST_F(golden_binary, of_eight_bytes_is_too_short) {
    EXPECT_FALSE(set_binary("binary_of_eight_bytes_is_too_short.udfs"));
    EXPECT_EQ(messages(), (Messages{"ParserFile.set_binary: data too short\n",
                                    "ParserFile.set_binary: Unknown format\n"}));
}

TEST_F(golden_binary, of_another_tag_is_an_unknown_format) {
    EXPECT_FALSE(set_binary("binary_of_another_tag_is_an_unknown_format.udfs"));
    EXPECT_EQ(messages(), (Messages{"ParserFile.set_binary: Unknown data tag\n",
                                    "ParserFile.set_binary: Unknown format\n"}));
}

TEST_F(golden_binary, with_an_empty_name_keeps_what_stands_before_it) {
    EXPECT_FALSE(set_binary("binary_with_an_empty_name_keeps_what_stands_before_it.udfs"));
    EXPECT_EQ(messages(), Messages{"ParserGroup.set_binary: Failed to read entry name\n"});
    EXPECT_EQ(tree(), " a 1");
}

TEST_F(golden_binary, with_a_bare_word_keeps_what_stands_before_it) {
    EXPECT_FALSE(set_binary("binary_with_a_bare_word_keeps_what_stands_before_it.udfs"));
    EXPECT_EQ(messages(), Messages{});
    EXPECT_EQ(tree(), " a 1");
}

TEST_F(golden_binary, with_infinities_reads_the_largest_doubles) {
    EXPECT_TRUE(set_binary("binary_with_infinities_reads_the_largest_doubles.udfs"));
    EXPECT_EQ(tree(), " a 1.7976931348623157e+308 -1.7976931348623157e+308 -1.7976931348623157e+308");
}

TEST_F(golden_enciphered, reads_and_is_written_the_same) {
    const char* const name = "enciphered_under_lantern_reads_and_is_written_the_same.bkd";
    EXPECT_TRUE(read(name));
    EXPECT_EQ(messages(), Messages{});
    EXPECT_TRUE(file.is_encrypted());
    EXPECT_EQ(file.get_serial_version().get_value(), 1.2);
    EXPECT_EQ(tree(), scene + " #Brellwick_Serial_Version 1.2");
    EXPECT_TRUE(file.write(ParserFile::MODE_TEXT, folder.core_path("out"), "lantern"));
    EXPECT_EQ(hex(folder.read("out")), hex(golden::bytes(name)));
}

TEST_F(golden_enciphered, reads_under_a_key_of_the_same_letters) {
    EXPECT_TRUE(read("enciphered_under_lantern_reads_and_is_written_the_same.bkd", "nretnal"));
}

TEST_F(golden_enciphered, is_unreadable_under_another_key) {
    const char* const name = "enciphered_under_lantern_reads_and_is_written_the_same.bkd";
    EXPECT_FALSE(read(name, "lanterns"));
    EXPECT_EQ(messages(), Messages{"Failed to read binary data from file '" + golden::path(name) + "'.\n"});
}

TEST_F(golden_enciphered, drops_its_header) {
    EXPECT_TRUE(read("enciphered_under_lantern_drops_its_header.bkd"));
    EXPECT_EQ(file.get_serial_version().get_value(), 1.2);
    EXPECT_EQ(tree(), " a \"tab\\there\"");
    EXPECT_EQ(plain(file.get_root().get_entry("a")->get_string(0)), "tab\there");
}

TEST_F(golden_enciphered, under_no_key_reads) {
    EXPECT_TRUE(read("enciphered_under_no_key_reads.bkd", ""));
    EXPECT_EQ(tree(), " a 1");
}

TEST_F(golden_enciphered, of_a_wrong_length_is_refused) {
    for (const char* name : {"enciphered_length_past_the_block_is_incompatible.bkd",
                             "enciphered_length_with_a_high_half_is_incompatible.bkd",
                             "enciphered_and_cut_inside_a_word_is_incompatible.bkd"}) {
        EXPECT_FALSE(read(name));
        EXPECT_EQ(messages(),
                  Messages{"Incompatible binary data found in file '" + golden::path(name) + "'.\n"});
    }
    const char* const name = "enciphered_length_past_the_file_is_unreadable.bkd";
    EXPECT_FALSE(read(name));
    EXPECT_EQ(messages(), Messages{"Failed to read binary data from file '" + golden::path(name) + "'.\n"});
    EXPECT_EQ(tree(), "");
}

TEST_F(golden_hexadecimal, of_a_group_ends_with_its_text) {
    const std::string text = golden::bytes("hexadecimal_under_lantern_of_a_group_ends_with_its_text.txt");
    const std::size_t digits = text.find(' ');
    EXPECT_TRUE(set_digits(text.substr(0, digits)));
    EXPECT_EQ(messages(), Messages{});
    EXPECT_EQ(tree(), " a 1 b { c \"x\" }");
    CoreString again;
    file.get_root().get_encrypted_text(again, "lantern", false, false, 1);
    EXPECT_EQ(plain(again), text);
}

TEST_F(golden_hexadecimal, of_an_entry_has_digits_alone) {
    const std::string text = golden::bytes("hexadecimal_under_lantern_of_an_entry_has_digits_alone.txt");
    EXPECT_TRUE(set_digits(text));
    EXPECT_EQ(tree(), " c \"x\"");
    CoreString again;
    file.get_root().get_entry("c")->get_encrypted_text(again, "lantern", false, 1);
    EXPECT_EQ(plain(again), text);
}

TEST_F(golden_hexadecimal, in_lower_case_is_refused) {
    EXPECT_FALSE(set_digits(golden::bytes("hexadecimal_in_lower_case_is_refused.txt")));
    EXPECT_EQ(tree(), "");
    EXPECT_EQ(messages(), Messages{});
}

TEST_F(golden_archive, reads_and_is_written_the_same) {
    const char* const name = "archive_reads_and_is_written_the_same.kwaf";
    EXPECT_EQ(load(name), "");
    ParserImpl::group_set_archive(file.get_root(), archive, nullptr);
    EXPECT_EQ(messages(), Messages{});
    EXPECT_EQ(tree(), scene);
    EXPECT_EQ(plain(ParserImpl::save_archive(archive, folder.core_path("loaded"), nullptr)), "");
    EXPECT_EQ(hex(folder.read("loaded")), hex(golden::bytes(name)));
    ParserArchive built;
    ParserImpl::archive_group(file.get_root(), built, false, nullptr);
    EXPECT_EQ(plain(ParserImpl::save_archive(built, folder.core_path("built"), nullptr)), "");
    EXPECT_EQ(hex(folder.read("built")), hex(golden::bytes(name)));
}

TEST_F(golden_archive, of_nothing_is_twenty_bytes) {
    const char* const name = "archive_of_nothing_is_twenty_bytes.kwaf";
    EXPECT_EQ(load(name), "");
    EXPECT_EQ(plain(ParserImpl::save_archive(archive, folder.core_path("out"), nullptr)), "");
    EXPECT_EQ(hex(folder.read("out")), hex(golden::bytes(name)));
}

TEST_F(golden_archive, of_300_words_has_indices_of_two_bytes) {
    const char* const name = "archive_of_300_words_has_indices_of_two_bytes.kwaf";
    EXPECT_EQ(load(name), "");
    ParserImpl::group_set_archive(file.get_root(), archive, nullptr);
    ASSERT_EQ(file.get_root().get_entry_count(), 1u);
    const ParserEntry& entry = *file.get_root().get_entry(0);
    ASSERT_EQ(entry.get_value_count(), 299u);
    EXPECT_EQ(entry.get_int(298), 298);
    ParserArchive built;
    ParserImpl::archive_group(file.get_root(), built, false, nullptr);
    EXPECT_EQ(plain(ParserImpl::save_archive(built, folder.core_path("out"), nullptr)), "");
    EXPECT_TRUE(folder.read("out") == golden::bytes(name));
}

TEST_F(golden_archive, with_stray_indices_skips_them) {
    EXPECT_EQ(load("archive_with_stray_indices_skips_them.kwaf"), "");
    ParserImpl::group_set_archive(file.get_root(), archive, nullptr);
    EXPECT_EQ(tree(), " a 1");
    EXPECT_EQ(messages(), Messages{});
}

TEST_F(golden_archive, that_is_no_archive_is_refused) {
    EXPECT_EQ(load("archive_of_another_magic_is_an_unknown_format.kwaf"), "unknown file format");
    EXPECT_EQ(load("archive_cut_in_its_indices_has_an_invalid_size.kwaf"), "invalid file size");
    EXPECT_EQ(archive.indices.get_count(), 0u);
    EXPECT_EQ(load("archive_cut_in_its_strings_has_an_invalid_size.kwaf"), "invalid file size");
}
