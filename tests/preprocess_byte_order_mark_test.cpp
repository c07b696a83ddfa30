#include "tests/support/enciphered_folder.h"

#include <gtest/gtest.h>

namespace {

using Messages = std::vector<std::string>;

const std::string mark = "\xEF\xBB\xBF";

/// Records the offsets at which pieces of files were copied.
class PieceOffsets : public ExpandedText {
public:
    std::vector<unsigned int> offsets;

    void piece_copied(const unsigned int& offset, const unsigned int& length,
                      const unsigned int& expanded) override {
        offsets.push_back(offset);
        ExpandedText::piece_copied(offset, length, expanded);
    }
};

} // namespace

TEST(preprocess_byte_order_mark, the_mark_of_a_file_is_skipped) {
    const DocumentFolder folder;
    const Reading reading = folder.read_text(mark + "a 1\nb 2\n");
    EXPECT_TRUE(reading.result);
    EXPECT_EQ(reading.expanded, "a 1\nb 2\n");
    EXPECT_EQ(reading.tree, " a 1 b 2");
    EXPECT_EQ(reading.messages, Messages());
}

TEST(preprocess_byte_order_mark, the_mark_counts_for_no_column) {
    const DocumentFolder folder;
    const Reading marked = folder.read_text(mark + "a @ 1\n");
    const Reading plain_text = folder.read_text("a @ 1\n");
    EXPECT_EQ(marked.messages.size(), 1u);
    EXPECT_EQ(marked.messages, plain_text.messages);
}

TEST(preprocess_byte_order_mark, the_mark_of_an_included_file_is_skipped) {
    const DocumentFolder folder;
    folder.write("x.bkd", mark + "from 1\n");
    EXPECT_EQ(folder.read_text("#include \"x.bkd\"\nb 2\n").tree, " from 1 b 2");
    EXPECT_EQ(folder.read_text(mark + "#include \"x.bkd\"\nb 2\n").tree, " from 1 b 2");
}

TEST(preprocess_byte_order_mark, the_mark_of_a_deciphered_text_is_skipped) {
    const EncipheredFolder folder;
    folder.write_enciphered("main.bkd", mark + "#Brellwick_Serial_Version 1.2\na 1\n", "lantern");
    const Reading reading = folder.read_with_key("main.bkd", "lantern");
    EXPECT_EQ(reading.expanded, "a 1\n");
    EXPECT_EQ(reading.tree, " a 1");
}

TEST(preprocess_byte_order_mark, what_stands_behind_the_mark_stands_at_the_beginning) {
    const DocumentFolder folder;
    const Reading version = folder.read_text(mark + "#Brellwick_Serial_Version 1.1\na 1\n");
    EXPECT_DOUBLE_EQ(version.version, 1.1);
    EXPECT_EQ(version.expanded, "a 1\n");
    // A quote at the beginning of a text opens no string.
    EXPECT_EQ(folder.read_text(mark + "\" // x\na 1\n").expanded,
              folder.read_text("\" // x\na 1\n").expanded);
}

TEST(preprocess_byte_order_mark, offsets_are_those_of_the_file) {
    const DocumentFolder folder;
    folder.write("x.bkd", mark + "from 1 // x\nto 2\n");
    folder.write("main.bkd", mark + "a 1\n#include \"x.bkd\"\nb 2\n");
    ParserFile file(folder.core_path("main.bkd"));
    file.set_search_paths({core(folder.path())});
    PieceOffsets observer;
    file.set_read_observer(&observer);
    ASSERT_TRUE(file.read("", "", nullptr));
    EXPECT_EQ(observer.text, "a 1\nfrom 1 to 2\n\nb 2\n");
    EXPECT_EQ(observer.offsets, (std::vector<unsigned int>{3, 3, 15, 23}));
}

TEST(preprocess_byte_order_mark, only_a_whole_mark_at_the_very_beginning_is_skipped) {
    const DocumentFolder folder;
    for (const std::string& text :
         {" " + mark + "a 1\n", mark + mark + "a 1\n", "a 1\n" + mark + "b 2\n", mark.substr(0, 2) + "a 1\n",
          mark.substr(0, 1), mark.substr(1) + "a 1\n"}) {
        const std::string kept = text.starts_with(mark) ? text.substr(mark.size()) : text;
        EXPECT_EQ(folder.read_text(text).expanded, kept);
    }
}

TEST(preprocess_byte_order_mark, a_file_of_a_mark_alone_is_an_empty_document) {
    const DocumentFolder folder;
    const Reading reading = folder.read_text(mark);
    EXPECT_TRUE(reading.result);
    EXPECT_EQ(reading.expanded, "");
    EXPECT_DOUBLE_EQ(reading.version, 1.0);
}

TEST(preprocess_byte_order_mark, nothing_writes_a_mark) {
    const DocumentFolder folder;
    folder.write("main.bkd", mark + "a 1\n");
    ParserFile file(folder.core_path("main.bkd"));
    ASSERT_TRUE(file.read("", "", nullptr));
    ASSERT_TRUE(file.write(ParserFile::MODE_TEXT, "", ""));
    EXPECT_EQ(folder.read("main.bkd"), on_disk("#Brellwick_Serial_Version 1.2\n\na 1"));
}

TEST(preprocess_byte_order_mark, no_part_of_a_memory_text_is_skipped) {
    const RecordingLog log;
    ParserGroup group("root");
    group.set_text(core(mark + "a 1\n"), default_parser_serial_version, nullptr);
    EXPECT_EQ(group.get_entries().get_count(), 0u);
}
