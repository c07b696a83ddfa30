#include "core/core_version.h"
#include "parser/parser_group.h"
#include "tests/support/plain_text.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

// A spelling of 1 MiB or more has a block of its own, apart from the other spellings of its entry.

namespace {

constexpr std::size_t mebibyte = std::size_t{1} << 20;

std::string digits_of(std::size_t size) {
    std::string digits(size, '0');
    digits.replace(0, 3, "7.5");
    return digits;
}

std::unique_ptr<ParserGroup> parsed(const std::string& text) {
    auto group = std::make_unique<ParserGroup>(CoreString());
    EXPECT_TRUE(group->set_text(core(text), CoreVersion(1.2), nullptr));
    return group;
}

ParserEntry& first_entry(const ParserGroup& group) {
    return *group.get_entries()[0];
}

TEST(text_long_spelling, numbers_of_any_length_are_printed_as_they_were_spelled) {
    for (const std::size_t size : {mebibyte - 3, mebibyte - 2, mebibyte - 1, mebibyte, 3 * mebibyte}) {
        const std::string row = "row 1 " + digits_of(size) + " 2 -" + digits_of(size) + " 3";
        const std::unique_ptr<ParserGroup> group = parsed(row + "\nnext 4 5");
        const ParserEntry& entry = first_entry(*group);
        ASSERT_EQ(entry.get_value_count(), 5u) << size;
        EXPECT_EQ(entry.get_value_type(3), ParserValue::TYPE_DOUBLE);
        EXPECT_TRUE(written(entry) == row) << size;
        EXPECT_EQ(entry.get_double(1), 7.5);
        EXPECT_EQ(entry.get_double(1), 7.5) << "read again";
        EXPECT_EQ(entry.get_int(4), 3);
        EXPECT_TRUE(written(entry) == row) << size << " after it was read";
        EXPECT_EQ(written(*group->get_entries()[1]), "next 4 5");
    }
}

TEST(text_long_spelling, added_words_of_any_length_are_printed_as_they_were_spelled) {
    for (const std::size_t size : {mebibyte - 2, mebibyte - 1, 3 * mebibyte}) {
        const std::string text(size, 'w');
        OwnedWord word(text);
        ParserEntry entry(CoreString("e"), ParserEntry::TYPE_ENTRY, 0, 0);
        entry.add_word(*word, ParserValue::TYPE_WORD);
        entry.add_int(1);
        EXPECT_TRUE(written(entry) == "e " + text + " 1") << size;
        EXPECT_TRUE(written(ParserEntry(entry)) == "e " + text + " 1") << size;
    }
}

TEST(text_long_spelling, copies_keep_it_and_its_number) {
    const std::string row = "row 1 " + digits_of(2 * mebibyte) + " 2";
    const std::unique_ptr<ParserGroup> group = parsed(row);
    const ParserGroup unread(*group);
    EXPECT_EQ(first_entry(*group).get_double(1), 7.5);
    const ParserEntry read(first_entry(*group));
    group->clear();
    EXPECT_TRUE(written(first_entry(unread)) == row);
    EXPECT_TRUE(written(read) == row);
    EXPECT_EQ(first_entry(unread).get_double(1), 7.5);
    EXPECT_EQ(read.get_double(1), 7.5);
}

TEST(text_long_spelling, edits_of_the_entry_keep_it) {
    const std::string number = digits_of(2 * mebibyte);
    const std::unique_ptr<ParserGroup> group =
        parsed("row 1 " + number + " 22 \"a string of many characters\" 4");
    ParserEntry& entry = first_entry(*group);
    entry.move_value(1, 3);
    EXPECT_TRUE(written(entry) == "row 1 22 \"a string of many characters\" " + number + " 4");
    entry.move_value(4, 0);
    entry.add_int(5);
    EXPECT_TRUE(written(entry) == "row 4 1 22 \"a string of many characters\" " + number + " 5");
    entry.remove_value(1);
    EXPECT_TRUE(written(entry) == "row 4 22 \"a string of many characters\" " + number + " 5");
    ParserEntry other(CoreString("other"), ParserEntry::TYPE_ENTRY, 0, 0);
    other = entry;
    EXPECT_EQ(other.get_double(3), 7.5);
    entry.set_int(6, 3);
    EXPECT_EQ(written(other), "row 4 22 \"a string of many characters\" 6 5");
}

TEST(text_long_spelling, added_words_are_kept_like_read_ones) {
    ParserEntry entry(CoreString("row"), ParserEntry::TYPE_ENTRY, 0, 0);
    std::string expected = "row";
    for (unsigned int i = 0; i < 20; ++i) {
        const std::string number = "0" + std::to_string(i) + ".50";
        OwnedWord word(number);
        entry.add_word(*word, ParserValue::TYPE_DOUBLE);
        expected += " " + number;
    }
    EXPECT_EQ(written(entry), expected);
    for (unsigned int i = 0; i < 20; ++i) {
        EXPECT_EQ(entry.get_double(i), i + 0.5);
    }
    EXPECT_EQ(written(entry), expected);
    EXPECT_EQ(written(ParserEntry(entry)), expected);
}

TEST(text_long_spelling, a_document_with_one_is_freed_as_a_whole) {
    std::string text;
    for (int i = 0; i < 4000; ++i) {
        text += "item 1 2.5 \"text\"\n";
    }
    text += "long " + digits_of(2 * mebibyte) + "\nlong " + digits_of(3 * mebibyte);
    const std::unique_ptr<ParserGroup> group = parsed(text); // the sanitizers check for leaks
    ASSERT_EQ(group->get_entries().get_count(), 4002u);
    EXPECT_EQ(group->get_entries()[4000]->get_double(0), 7.5);
}

} // namespace
