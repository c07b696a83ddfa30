#include "tests/support/bkdoc_forms.h"

#include "tests/support/bytes.h"

#include <gtest/gtest.h>

#include <sstream>

namespace {

/// A line of a map: the offset, and the rest with each run of blanks reduced to one.
struct Row {
    std::size_t offset;
    std::string text;
};

std::vector<Row> rows_of(const std::string& map) {
    std::vector<Row> rows;
    std::istringstream lines(map);
    std::string line;
    std::getline(lines, line); // skips the line of the file
    std::getline(lines, line); // skips the line of the column names
    while (std::getline(lines, line)) {
        std::istringstream words(line);
        std::string word;
        Row row{0, ""};
        if (!line.starts_with(' ')) {
            words >> word;
            row.offset = std::stoul(word, nullptr, 16);
        }
        while (words >> word) {
            row.text += (row.text.empty() ? "" : " ") + word;
        }
        rows.push_back(row);
    }
    return rows;
}

std::string list_of(const std::string& map) {
    std::string list;
    for (const Row& row : rows_of(map)) {
        list += std::to_string(row.offset) + ": " + row.text + "\n";
    }
    return list;
}

std::string entry_of(std::string_view name, std::string_view values) {
    return std::string(name) + '\0' + size_field(values.size() + 1) + '\0' + std::string(values);
}

std::string binary_of(std::string_view entries) {
    return "UDFS" + size_field(entries.size()) + std::string(entries);
}

BkdocRun dump(const std::string& bytes) {
    return run_bkdoc({"dump", "-"}, bytes);
}

/// Expects that the map ends at `offset`, the first byte that it cannot explain, with a message that contains
/// `reason`.
void expect_stop(const std::string& bytes, std::size_t offset, std::string_view reason) {
    const BkdocRun run = dump(bytes);
    EXPECT_EQ(run.code, 1) << hex(bytes);
    const std::string place = "bkdoc: <stdin>: at byte " + std::to_string(offset) + ": expected ";
    EXPECT_TRUE(run.err.starts_with(place)) << run.err;
    EXPECT_TRUE(contains(run.err, reason)) << run.err;
    for (const Row& row : rows_of(run.out)) {
        if (contains(row.text, "?")) {
            EXPECT_EQ(row.offset, offset) << run.out;
            return;
        }
    }
    FAIL() << run.out;
}

TEST(bkdoc_dump, every_type_of_value_is_explained) {
    const std::string values = unhex("01 01  02 41  03 FE FF FF FF  04 00 00 00 00 00 00 F8 3F") + "\x05hi" +
                               std::string(1, '\0') + "\x06" + size_field(2) + unhex("AB CD");
    const BkdocRun run = dump(binary_of(entry_of("a", values)));
    EXPECT_EQ(run.code, 0) << run.err;
    EXPECT_EQ(run.err, "");
    EXPECT_TRUE(run.out.starts_with("<stdin>  binary, 56 bytes\noffset ")) << run.out;
    EXPECT_EQ(list_of(run.out), "0: 55 44 46 53 tag a document in the binary form\n"
                                "4: 2C 00 00 00 00 00 00 00 size 44 bytes of entries\n"
                                "12: 61 00 entry a\n"
                                "14: 22 00 00 00 00 00 00 00 size 34 bytes, the next one and the values\n"
                                "22: 00 reserved\n"
                                "23: 01 01 bool yes\n"
                                "25: 02 41 char 65 'A'\n"
                                "27: 03 FE FF FF FF int -2\n"
                                "32: 04 00 00 00 00 00 00 F8 3F double 1.5\n"
                                "41: 05 68 69 00 string \"hi\"\n"
                                "45: 06 02 00 00 00 00 00 00 00 data 2 bytes\n"
                                "54: AB CD bytes\n");
}

TEST(bkdoc_dump, groups_are_indented_and_come_back) {
    const std::string inner = entry_of("b", unhex("01 00"));
    const std::string group = std::string(1, '\0') + size_field(inner.size()) + inner;
    const BkdocRun run = dump(binary_of(entry_of("a", group) + entry_of("c", "")));
    EXPECT_EQ(run.code, 0) << run.err;
    EXPECT_TRUE(contains(run.out, "  entry               a\n")) << run.out;
    EXPECT_TRUE(contains(run.out, "    group\n")) << run.out;
    EXPECT_TRUE(contains(run.out, "      entry           b\n")) << run.out;
    EXPECT_TRUE(contains(run.out, "        bool          no\n")) << run.out;
    EXPECT_TRUE(contains(run.out, "  entry               c\n")) << run.out;
}

TEST(bkdoc_dump, what_the_library_writes_is_explained_in_every_form) {
    const ScratchFolder folder;
    for (const char* form : {"binary", "cipher", "archive"}) {
        const std::string file =
            write_in_form(folder, form, "a { b 1 c \"x\" 0x01FF00010000 } d(yes) e <empty>");
        const BkdocRun run = run_with_key({"dump", file});
        EXPECT_EQ(run.code, 0) << form << run.err;
        EXPECT_EQ(run.err, "") << form;
    }
}

TEST(bkdoc_dump, a_binary_file_that_ends_early_is_not_explained_to_its_end) {
    const std::string inner = entry_of("b", unhex("03 01 00 00 00"));
    const std::string group = std::string(1, '\0') + size_field(inner.size()) + inner;
    const std::string whole = binary_of(entry_of("a", group));
    ASSERT_EQ(dump(whole).code, 0);
    for (std::size_t size = 4; size < whole.size(); ++size) {
        ASSERT_EQ(dump(whole.substr(0, size)).code, 1) << size;
    }
}

TEST(bkdoc_dump, the_first_byte_that_has_no_meaning_in_binary_data_is_told) {
    expect_stop("UDFS\x01", 4, "the 8 bytes of the size of a group");
    expect_stop("UDFS" + size_field(99), 4, "found 99, but the file has only 0 bytes after it");
    expect_stop("UDFS" + size_field(0xFFFFFFFFFFFFFFFFu) + "abc", 4, "found 18,446,744,073,709,551,615");
    expect_stop(binary_of("abc"), 12, "no 00 byte ends it inside the group");
    expect_stop(binary_of(std::string(1, '\0')), 12, "found an empty one");
    expect_stop(binary_of(std::string("a\0\x05", 3)), 14, "the 8 bytes of the size of an entry");
    expect_stop(binary_of(std::string("a\0", 2) + size_field(50)), 14, "the group has only 0 bytes after it");
    expect_stop(binary_of(std::string("a\0", 2) + size_field(0)), 14, "no room for its reserved byte");
    expect_stop(binary_of(entry_of("a", "\x07")), 23, "found 0x07");
    expect_stop(binary_of(entry_of("a", "\xFF")), 23, "found 0xFF");
    expect_stop(binary_of(entry_of("a", "\x03\x01")), 23, "5 bytes of a value of type int");
    expect_stop(binary_of(entry_of("a", "\x05open")), 23, "no 00 byte ends it inside the entry");
    expect_stop(binary_of(entry_of("a", "\x06\x01")), 23, "the 8 bytes of the size of data");
    expect_stop(binary_of(entry_of("a", "\x06" + size_field(2) + "x")), 23,
                "found 2, but the entry has only 1 byte");
    expect_stop(binary_of(entry_of("a", "\x06" + size_field(1ULL << 32) + "x")), 23, "found 4,294,967,296");
    expect_stop(binary_of("") + "x", 12, "1 byte after the document");
}

TEST(bkdoc_dump, a_group_may_not_reach_over_the_entry_that_holds_it) {
    const std::string group = std::string(1, '\0') + size_field(20);
    expect_stop(binary_of(entry_of("a", group) + entry_of("long_name", unhex("01 00"))), 24,
                "the entry has only 0 bytes after it");
}

TEST(bkdoc_dump, random_bytes_are_explained_or_not_but_never_more_than_there_are) {
    unsigned int state = 1;
    for (int round = 0; round < 60; ++round) {
        std::string bytes = round % 2 == 0 ? "UDFS" : "KWAF";
        for (int i = 0; i < 60; ++i) {
            state = state * 1664525u + 1013904223u;
            bytes += static_cast<char>(state >> 28); // small numbers, which are sometimes valid sizes
        }
        const BkdocRun run = dump(bytes);
        ASSERT_TRUE(run.code == 0 || run.code == 1) << hex(bytes) << run.err;
        for (const Row& row : rows_of(run.out)) {
            ASSERT_LE(row.offset, bytes.size()) << hex(bytes);
        }
    }
}

TEST(bkdoc_dump, offsets_follow_each_other_without_a_gap) {
    const ScratchFolder folder;
    const std::string file = write_in_form(folder, "binary", "a { b 1 c \"x\" } d 2.5 yes");
    const std::vector<Row> rows = rows_of(run_bkdoc({"dump", file}).out);
    ASSERT_GT(rows.size(), 10u);
    for (std::size_t i = 0; i + 1 < rows.size(); ++i) {
        std::istringstream words(rows[i].text);
        std::string word;
        std::size_t size = 0;
        while (words >> word && word.size() == 2 &&
               word.find_first_not_of("0123456789ABCDEF") == std::string::npos) {
            ++size;
        }
        EXPECT_EQ(rows[i].offset + size, rows[i + 1].offset) << rows[i].text;
    }
}

TEST(bkdoc_dump, an_archive_is_explained_with_its_words) {
    const ScratchFolder folder;
    const BkdocRun run = run_bkdoc({"dump", write_in_form(folder, "archive", "a 1 2 b 1 ")});
    EXPECT_EQ(run.code, 0) << run.err;
    EXPECT_EQ(list_of(run.out), "0: 4B 57 41 46 magic an archive of words\n"
                                "4: 00 00 00 00 00 00 00 00 reserved\n"
                                "12: 04 00 00 00 count 4 strings, each character stored less 15\n"
                                "16: 52 00 string 0 a\n"
                                "18: 22 00 string 1 1\n"
                                "20: 23 00 string 2 2\n"
                                "22: 53 00 string 3 b\n"
                                "24: 05 00 00 00 count 5 words, each the number of a string in 1 byte\n"
                                "28: 00 01 02 03 01 word 0 a 1 2 b 1\n");
}

TEST(bkdoc_dump, the_first_byte_that_has_no_meaning_in_an_archive_is_told) {
    const std::string head = "KWAF" + std::string(8, '\0');
    expect_stop("KWAF", 4, "the 8 reserved bytes");
    expect_stop(head + "\x01", 12, "the 4 bytes of the number of strings");
    expect_stop(head + little(2, 4) + std::string("R\0", 2), 18,
                "string 1 of 2 (from 0), but the file ends here");
    expect_stop(head + little(1, 4) + "R", 16, "string 0 of 1 (from 0), but no 00 byte ends it");
    expect_stop(head + little(0xFFFFFFFFu, 4), 16, "of 4,294,967,295");
    expect_stop(head + little(0, 4), 16, "the 4 bytes of the number of words");
    expect_stop(head + little(0, 4) + little(0xFFFFFFFFu, 4) + "x", 16, "found 4,294,967,295");
    const std::string one = head + little(1, 4) + std::string("R\0", 2);
    expect_stop(one + little(3, 4) + std::string("\0\0\x01", 3), 24, "less than 1, found 1");
    expect_stop(one + little(1, 4) + std::string("\0?", 2), 23, "1 byte after the archive");
}

TEST(bkdoc_dump, an_enciphered_file_shows_its_frame_without_the_key) {
    const ScratchFolder folder;
    const std::string file = write_in_form(folder, "cipher", "secret_name 1 ");
    const std::string bytes = folder.read("cipher.bkd");
    const BkdocRun run = run_bkdoc({"dump", file});
    EXPECT_EQ(run.code, 0) << run.err;
    const std::string list = list_of(run.out);
    EXPECT_TRUE(contains(list, " length encrypted\n")) << list;
    EXPECT_TRUE(
        contains(list, " text " + std::to_string(bytes.size() - 12) + " bytes, encrypted and padded\n"))
        << list;
    EXPECT_FALSE(contains(run.out, "secret_name"));
}

TEST(bkdoc_dump, an_enciphered_file_shows_its_length_and_text_with_the_key) {
    const ScratchFolder folder;
    const std::string file = write_in_form(folder, "cipher", "secret_name 1 ");
    const BkdocRun run = run_with_key({"dump", file});
    EXPECT_EQ(run.code, 0) << run.err;
    EXPECT_TRUE(contains(list_of(run.out), " length encrypted; 44 bytes of text\n")) << run.out;
    EXPECT_TRUE(contains(run.out, "| secret_name 1\n")) << run.out;
}

TEST(bkdoc_dump, another_key_and_a_bad_length_are_told) {
    const ScratchFolder folder;
    const std::string file = write_in_form(folder, "cipher", "a 1 ");
    const BkdocRun wrong = run_bkdoc({"dump", file, "--key", "portal"});
    EXPECT_EQ(wrong.code, 1);
    EXPECT_TRUE(contains(wrong.err, ": at byte 4: expected the length of a text that fits the file"))
        << wrong.err;
    EXPECT_FALSE(contains(wrong.out + wrong.err, "portal"));
    const std::string bytes = folder.read("cipher.bkd");
    expect_stop(bytes.substr(0, 9), 4, "the 8 bytes of the encrypted length");
    expect_stop(bytes + "xy", bytes.size(), "a word of 4 bytes");
}

TEST(bkdoc_dump, a_text_needs_no_map) {
    const BkdocRun run = dump("a 1\n");
    EXPECT_EQ(run.code, 2);
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.err, "bkdoc: <stdin> is text; dump reads binary, enciphered and archive files\n");
}

TEST(bkdoc_dump, a_hundred_thousand_groups_in_each_other_are_explained) {
    ParserFile file("");
    ParserGroup* group = &file.get_root();
    for (int i = 0; i < 100'000; ++i) {
        group = group->add_group("g");
    }
    const BkdocRun run = dump(bytes_of(file.get_binary()));
    EXPECT_EQ(run.code, 0) << run.err;
    EXPECT_TRUE(contains(run.out, "\xE2\x80\xA6"
                                  "100000 size"))
        << run.out.substr(run.out.size() - 300);
}

TEST(bkdoc_dump, the_map_goes_on_behind_an_entry_that_is_not_explained) {
    const BkdocRun run = dump(binary_of(entry_of("a", unhex("01 01 99 98")) + entry_of("b", unhex("01 00"))));
    EXPECT_EQ(run.code, 1);
    EXPECT_EQ(run.err, "bkdoc: <stdin>: at byte 25: expected the type of a value, 00 to 06, found 0x99\n");
    EXPECT_EQ(list_of(run.out), "0: 55 44 46 53 tag a document in the binary form\n"
                                "4: 1C 00 00 00 00 00 00 00 size 28 bytes of entries\n"
                                "12: 61 00 entry a\n"
                                "14: 05 00 00 00 00 00 00 00 size 5 bytes, the next one and the values\n"
                                "22: 00 reserved\n"
                                "23: 01 01 bool yes\n"
                                "25: 99 98 ? 2 bytes not explained\n"
                                "27: 62 00 entry b\n"
                                "29: 03 00 00 00 00 00 00 00 size 3 bytes, the next one and the values\n"
                                "37: 00 reserved\n"
                                "38: 01 00 bool no\n");
}

TEST(bkdoc_dump, a_file_that_is_cut_off_is_explained_up_to_the_cut) {
    const std::string whole = binary_of(entry_of("a", unhex("01 01")) + entry_of("b", unhex("01 00 01 01")));
    const BkdocRun run = dump(whole.substr(0, whole.size() - 1));
    EXPECT_EQ(run.code, 1);
    EXPECT_EQ(run.err,
              "bkdoc: <stdin>: at byte 4: expected the size of a group, found 28, but the file has only "
              "27 bytes after it\n"
              "bkdoc: <stdin>: at byte 27: expected the size of an entry, found 5, but the group has "
              "only 4 bytes after it\n"
              "bkdoc: <stdin>: at byte 38: expected 2 bytes of a value of type bool, but the entry has "
              "only 1 byte left\n");
    EXPECT_TRUE(contains(list_of(run.out), "36: 01 00 bool no\n38: 01 ? 1 byte not explained\n")) << run.out;
}

TEST(bkdoc_dump, the_map_goes_on_behind_a_word_that_names_no_string) {
    const std::string head = "KWAF" + std::string(8, '\0') + little(1, 4) + std::string("R\0", 2);
    const BkdocRun run = dump(head + little(4, 4) + std::string("\0\x09\0\0", 4));
    EXPECT_EQ(run.code, 1);
    EXPECT_EQ(run.err, "bkdoc: <stdin>: at byte 23: expected the number of a string, less than 1, found 9\n");
    EXPECT_TRUE(
        contains(list_of(run.out), "22: 00 word 0 a\n23: 09 ? 1 byte not explained\n24: 00 00 word 2 a a\n"))
        << run.out;
}

} // namespace
