#include "tests/support/binary_form.h"
#include "tests/support/recording_log.h"

#include <gtest/gtest.h>

namespace {

using namespace binary_form;

ParserEntry make_entry(std::string_view name, ParserEntry::Type type = ParserEntry::TYPE_ENTRY) {
    return ParserEntry(core(name), type, 5, 6);
}

/// Reads an entry "e" from a position in a buffer.
class ReadEntry {
public:
    explicit ReadEntry(std::string_view bytes, int verbosity = 2) : entry_(make_entry("e")) {
        RecordingLog log(verbosity);
        core_uint64 position = 3;
        result_ = entry_.set_binary(buffer("***" + std::string(bytes)), position);
        advance_ = position - 3;
        messages_ = log.take();
    }

    ParserEntry& entry() { return entry_; }
    bool result() const { return result_; }
    core_uint64 advance() const { return advance_; }
    const std::vector<LoggedMessage>& messages() const { return messages_; }
    bool is_quiet() const { return messages_.empty(); }

private:
    ParserEntry entry_;
    bool result_ = false;
    core_uint64 advance_ = 0;
    std::vector<LoggedMessage> messages_;
};

std::vector<LoggedMessage> too_large(const std::string& size, std::size_t buffer_size) {
    return one_warning("ParserEntry.set_binary: ParserEntry 'e', chunk size (" + size +
                       ") is larger than the given buffer (" + std::to_string(buffer_size) + ")\n");
}

} // namespace

TEST(entry_binary, an_entry_without_values_is_its_name_its_size_and_a_reserved_byte) {
    EXPECT_EQ(hex(make_entry("ab").get_binary()), "61 62 00 01 00 00 00 00 00 00 00 00");
    EXPECT_EQ(make_entry("ab").get_binary().get_count(), 2u + 10);
}

TEST(entry_binary, values_follow_one_after_the_other) {
    ParserEntry entry = make_entry("ab");
    entry.add_int(1);
    entry.add_string("x");
    entry.add_bool(true);
    EXPECT_EQ(hex(entry.get_binary()), "61 62 00 0B 00 00 00 00 00 00 00 00 03 01 00 00 00 05 78 00 01 01");
}

TEST(entry_binary, every_type_of_value_is_written) {
    ParserEntry entry = make_entry("e");
    std::string bytes = "\x07\x08";
    entry.add_group(nullptr)->add_entry("inner", 0, 0)->add_int(1);
    entry.add_bool(false);
    entry.add_char('A');
    entry.add_int(-5);
    entry.add_double(0.25);
    entry.add_string("text");
    entry.add_binary_data(bytes.data(), 2);
    const std::string values = group_value(binary_form::entry("inner", int_value(1))) + bool_value(false) +
                               char_value('A') + int_value(-5) + double_value(0.25) + string_value("text") +
                               data_value(bytes);
    EXPECT_EQ(hex(entry.get_binary()), hex(binary_form::entry("e", values)));
}

TEST(entry_binary, the_empty_name_is_its_nul_alone) {
    EXPECT_EQ(hex(make_entry("").get_binary()), "00 01 00 00 00 00 00 00 00 00");
}

TEST(entry_binary, kind_template_array_count_and_place_are_not_part_of_it) {
    const std::string expected = hex(binary_form::entry("e", int_value(1)));
    for (const auto type : {ParserEntry::TYPE_ENTRY, ParserEntry::TYPE_KEYWORD,
                            ParserEntry::TYPE_FUNCTION_CALL, ParserEntry::TYPE_RAW_TEXT}) {
        ParserEntry entry = make_entry("e", type);
        entry.add_int(1);
        entry.set_template("t");
        entry.set_array(true, 7);
        EXPECT_EQ(hex(entry.get_binary()), expected);
    }
}

TEST(entry_binary, writing_leaves_the_entry_as_it_was) {
    ParserEntry entry = make_entry("e");
    entry.add_int(1);
    const std::string before = written(entry);
    entry.get_binary();
    EXPECT_EQ(written(entry), before);
}

TEST(entry_binary, what_follows_the_name_is_read) {
    ReadEntry read(entry_body(int_value(1) + string_value("x")) + "rest");
    EXPECT_TRUE(read.result());
    EXPECT_TRUE(read.is_quiet());
    EXPECT_EQ(read.advance(), 9u + 5 + 3);
    EXPECT_EQ(written(read.entry()), "e 1 \"x\"");
}

TEST(entry_binary, an_entry_without_values_is_read) {
    ReadEntry read(entry_body("") + "rest");
    EXPECT_TRUE(read.result());
    EXPECT_TRUE(read.is_quiet());
    EXPECT_EQ(read.advance(), 9u);
    EXPECT_EQ(read.entry().get_value_count(), 0u);
}

TEST(entry_binary, a_size_of_zero_is_read_as_no_values) {
    ReadEntry read(size_field(0) + '\0' + int_value(1));
    EXPECT_TRUE(read.result());
    EXPECT_EQ(read.advance(), 9u);
    EXPECT_EQ(read.entry().get_value_count(), 0u);
}

TEST(entry_binary, the_reserved_byte_may_be_anything) {
    for (int code = 0; code < 256; ++code) {
        ReadEntry read(size_field(6) + static_cast<char>(code) + int_value(1));
        EXPECT_TRUE(read.result());
        EXPECT_EQ(written(read.entry()), "e 1");
    }
}

TEST(entry_binary, reading_appends_values_and_changes_nothing_else) {
    ParserEntry entry = make_entry("e", ParserEntry::TYPE_KEYWORD);
    entry.add_bool(true);
    entry.set_template("t");
    entry.set_array(true, 7);
    core_uint64 position = 0;
    EXPECT_TRUE(entry.set_binary(buffer(entry_body(int_value(1))), position));
    EXPECT_EQ(written(entry), "e<t>[7] yes 1");
    EXPECT_EQ(entry.get_type(), ParserEntry::TYPE_KEYWORD);
    EXPECT_EQ(entry.get_line(), 5u);
    EXPECT_EQ(entry.get_column(), 6u);
}

TEST(entry_binary, a_size_larger_than_the_whole_buffer_is_refused) {
    ReadEntry read(size_field(18) + '\0' + int_value(1));
    EXPECT_FALSE(read.result());
    EXPECT_EQ(read.messages(), too_large("18", 3 + 14));
    EXPECT_EQ(read.advance(), 8u);
    EXPECT_EQ(read.entry().get_value_count(), 0u);
}

TEST(entry_binary, the_largest_sizes_are_refused) {
    EXPECT_EQ(ReadEntry(size_field(~0ull) + "*").messages(), too_large("18446744073709551615", 12));
    EXPECT_EQ(ReadEntry(size_field(0x100000006) + "*").messages(), too_large("4294967302", 12));
    EXPECT_FALSE(ReadEntry(size_field(~0ull) + "*").result());
    EXPECT_FALSE(ReadEntry(size_field(0x100000006) + '\0' + int_value(1)).result());
}

TEST(entry_binary, a_size_is_refused_without_a_message_below_verbosity_2) {
    ReadEntry read(size_field(1000) + '\0', 1);
    EXPECT_FALSE(read.result());
    EXPECT_TRUE(read.is_quiet());
}

TEST(entry_binary, a_size_of_the_whole_buffer_passes_and_fails_at_the_end_of_the_data) {
    ReadEntry read(size_field(17) + '\0' + int_value(1));
    EXPECT_FALSE(read.result());
    EXPECT_TRUE(read.is_quiet());
    EXPECT_EQ(written(read.entry()), "e 1");
}

TEST(entry_binary, a_size_that_ends_inside_a_value_takes_the_value) {
    for (core_uint64 size = 2; size <= 6; ++size) {
        ReadEntry read(size_field(size) + '\0' + int_value(1) + int_value(2));
        EXPECT_TRUE(read.result()) << size;
        EXPECT_EQ(read.advance(), 9u + 5);
        EXPECT_EQ(written(read.entry()), "e 1");
    }
}

TEST(entry_binary, a_size_one_past_a_value_takes_the_next_too) {
    ReadEntry read(size_field(7) + '\0' + int_value(1) + int_value(2) + int_value(3));
    EXPECT_TRUE(read.result());
    EXPECT_EQ(read.advance(), 9u + 10);
    EXPECT_EQ(written(read.entry()), "e 1 2");
}

TEST(entry_binary, a_number_that_is_no_type_fails_and_what_was_read_stays) {
    for (const char* tag : {"\x07", "\x08", "\x7F", "\x80", "\xFF"}) {
        ReadEntry read(entry_body(int_value(1) + tag + int_value(2)));
        EXPECT_FALSE(read.result());
        EXPECT_TRUE(read.is_quiet());
        EXPECT_EQ(read.advance(), 9u + 5 + 1);
        EXPECT_EQ(written(read.entry()), "e 1");
    }
}

TEST(entry_binary, an_entry_with_a_bare_word_cannot_be_read_back) {
    ParserEntry entry = make_entry("e");
    entry.add_int(1);
    entry.add_word(*OwnedWord("<empty>"), ParserValue::TYPE_WORD);
    const std::string bytes = bytes_of(entry.get_binary());
    EXPECT_EQ(hex(bytes), hex(binary_form::entry("e", int_value(1) + word_value())));
    ReadEntry read(bytes.substr(2));
    EXPECT_FALSE(read.result());
    EXPECT_EQ(written(read.entry()), "e 1");
}

TEST(entry_binary, a_string_that_is_cut_is_an_empty_value_and_then_the_data_are_at_their_end) {
    ReadEntry read(size_field(10) + '\0' + int_value(1) + "\5ab");
    EXPECT_FALSE(read.result());
    EXPECT_EQ(read.messages(), one_warning("ParserValue.bin_to_string: Failed to parse string\n"));
    EXPECT_EQ(written(read.entry()), "e 1 \"\"");
}

TEST(entry_binary, a_string_that_is_cut_where_the_entry_ends_is_read_as_empty) {
    ReadEntry read(size_field(4) + '\0' + "\5ab");
    EXPECT_TRUE(read.result());
    EXPECT_EQ(read.messages(), one_warning("ParserValue.bin_to_string: Failed to parse string\n"));
    EXPECT_EQ(written(read.entry()), "e \"\"");
}

TEST(entry_binary, binary_data_that_are_cut_are_an_empty_value_and_reported_once) {
    ReadEntry read(size_field(14) + '\0' + '\6' + size_field(50) + "abcd");
    EXPECT_TRUE(read.result());
    EXPECT_EQ(read.messages(), one_warning("ParserValue.bin_to_binary_data: Failed to parse string\n"));
    EXPECT_EQ(written(read.entry()), "e 0x00000000");
}

TEST(entry_binary, a_size_that_is_cut_is_taken_with_zeros) {
    ReadEntry nothing("");
    EXPECT_TRUE(nothing.result());
    EXPECT_EQ(nothing.advance(), 9u);
    ReadEntry one("\1");
    EXPECT_TRUE(one.result());
    EXPECT_EQ(one.advance(), 9u);
    EXPECT_EQ(one.entry().get_value_count(), 0u);
    ReadEntry two("\2");
    EXPECT_FALSE(two.result()) << "there is no value at the end of the data";
    EXPECT_EQ(two.entry().get_value_count(), 0u);
}

TEST(entry_binary, an_entry_cut_anywhere_keeps_the_values_before_the_cut) {
    const std::string whole = entry_body(int_value(1) + bool_value(true) + char_value('A'));
    for (std::size_t size = 9; size < whole.size(); ++size) {
        ReadEntry read(whole.substr(0, size));
        const std::size_t in_values = size - 9;
        // The decoder reads a value whose type byte is there, and takes its missing bytes as zeros.
        const std::size_t values = (in_values > 0) + (in_values > 5) + (in_values > 7);
        EXPECT_EQ(read.entry().get_value_count(), values) << size;
        EXPECT_EQ(read.result(), values == 3) << size;
    }
}

TEST(entry_binary, a_group_value_that_fails_does_not_fail_the_entry) {
    ReadEntry read(entry_body(int_value(1) + '\0' + size_field(1000)));
    EXPECT_TRUE(read.result());
    EXPECT_EQ(read.messages(),
              one_warning("ParserGroup.set_binary: ParserGroup size larger than the given data\n"));
    EXPECT_EQ(written(read.entry()), "e 1 { }");
}

TEST(entry_binary, a_nested_entry_that_is_too_large_is_reported_by_its_name) {
    const std::string inner = "inner" + std::string(1, '\0') + size_field(1000);
    ReadEntry read(entry_body(group_value(inner)));
    EXPECT_TRUE(read.result());
    EXPECT_EQ(read.messages(),
              one_warning("ParserEntry.set_binary: ParserEntry 'inner', chunk size (1000) is larger than the "
                          "given buffer (" +
                          std::to_string(3 + 9 + 9 + inner.size()) + ")\n"));
    EXPECT_EQ(written(read.entry()), "e { }");
}

TEST(entry_binary, what_follows_a_group_that_failed_is_read_as_values) {
    const std::string inner = binary_form::entry("a", int_value(1)) + binary_form::entry("b", word_value());
    ReadEntry read(entry_body(group_value(inner) + int_value(2)));
    EXPECT_TRUE(read.result());
    EXPECT_TRUE(read.is_quiet());
    EXPECT_EQ(written(read.entry()), "e { a 1 } 2");
}

TEST(entry_binary, a_position_far_past_the_end_touches_nothing) {
    for (const core_uint64 start : {core_uint64{17}, core_uint64{0xFFFFFFF0}, core_uint64{1} << 40}) {
        ParserEntry entry = make_entry("e");
        core_uint64 position = start;
        EXPECT_TRUE(entry.set_binary(buffer(std::string(16, '\3')), position));
        EXPECT_EQ(position, start + 9);
        EXPECT_EQ(entry.get_value_count(), 0u);
    }
}

TEST(entry_binary, a_position_at_the_end_of_all_numbers_is_survived) {
    const RecordingLog quiet(0);
    for (core_uint64 back = 0; back < 12; ++back) {
        ParserEntry entry = make_entry("e");
        core_uint64 position = ~core_uint64{0} - back;
        entry.set_binary(buffer(std::string(16, '\3')), position);
        EXPECT_EQ(entry.get_value_count(), 0u);
    }
}

TEST(entry_binary, many_values_come_back) {
    ParserEntry entry = make_entry("e");
    for (int i = 0; i < 100000; ++i) {
        entry.add_int(i);
    }
    ReadEntry read(bytes_of(entry.get_binary()).substr(2));
    EXPECT_TRUE(read.result());
    ASSERT_EQ(read.entry().get_value_count(), 100000u);
    EXPECT_EQ(read.entry().get_int(99999), 99999);
}
