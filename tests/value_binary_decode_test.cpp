#include "core/core_memory.h"
#include "tests/support/binary_form.h"
#include "tests/support/recording_log.h"
#include "tests/support/value_type.h"

#include <gtest/gtest.h>

#include <limits>
#include <memory>

namespace {

using Position = unsigned long long;
using Messages = std::vector<LoggedMessage>;

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double largest = 1.7976931348623157e308;
const char* const bad_string = "ParserValue.bin_to_string: Failed to parse string\n";
const char* const bad_data = "ParserValue.bin_to_binary_data: Failed to parse string\n";

/// Decodes from a position in a buffer, and expects the position to grow by `advance`.
template <class Decode>
auto decoded(std::string_view bytes, Position advance, Decode decode) {
    const std::string before = "***";
    const CoreVector<char> data = buffer(before + std::string(bytes));
    Position position = before.size();
    auto result = decode(data, position);
    EXPECT_EQ(position, before.size() + advance);
    return result;
}

std::string decoded_string(std::string_view bytes, Position advance) {
    return plain(decoded(bytes, advance, ParserValue::bin_to_string));
}

/// "null", or the bytes in hexadecimal.
std::string decoded_data(std::string_view bytes, Position advance) {
    unsigned int size = 77;
    void* const data = decoded(bytes, advance, [&](const auto& buffer, Position& position) {
        return ParserValue::bin_to_binary_data(buffer, position, size);
    });
    if (data == nullptr) {
        EXPECT_EQ(size, 0u);
        return "null";
    }
    const std::string result = hex({static_cast<const char*>(data), size});
    CoreMemory::release(data, size);
    return result;
}

std::unique_ptr<ParserValue> decoded_value(std::string_view bytes, Position advance) {
    return std::unique_ptr<ParserValue>(decoded(bytes, advance, ParserValue::bin_to_value));
}

/// The type and text of a value.
std::string described(std::string_view bytes, Position advance) {
    const auto value = decoded_value(bytes, advance);
    return value == nullptr ? "null" : type_name(*value) + " " + written(*value);
}

} // namespace

TEST(value_binary_decode, a_bool_is_true_when_its_byte_is_not_zero) {
    for (int code = 0; code < 256; ++code) {
        EXPECT_EQ(decoded(std::string(1, static_cast<char>(code)), 1, ParserValue::bin_to_bool), code != 0);
    }
}

TEST(value_binary_decode, a_char_is_its_byte) {
    for (int code = 0; code < 256; ++code) {
        const char character = static_cast<char>(code);
        EXPECT_EQ(decoded(std::string(1, character), 1, ParserValue::bin_to_char), character);
    }
}

TEST(value_binary_decode, an_int_is_four_bytes_the_lowest_first) {
    EXPECT_EQ(decoded(unhex("04 03 02 01 99"), 4, ParserValue::bin_to_int), 0x01020304);
    EXPECT_EQ(decoded(unhex("FE FF FF FF"), 4, ParserValue::bin_to_int), -2);
    EXPECT_EQ(decoded(unhex("00 00 00 80"), 4, ParserValue::bin_to_int), std::numeric_limits<int>::min());
}

TEST(value_binary_decode, a_double_is_read_as_it_stands) {
    EXPECT_EQ(decoded(unhex("33 33 33 33 33 33 F3 3F 99"), 8, ParserValue::bin_to_double), 1.2);
    EXPECT_EQ(decoded(unhex("00 00 00 00 00 00 F0 7F"), 8, ParserValue::bin_to_double), infinity);
    EXPECT_EQ(decoded(unhex("00 00 00 00 00 00 F0 FF"), 8, ParserValue::bin_to_double), -infinity);
    const double none = decoded(unhex("00 00 00 00 00 00 F8 7F"), 8, ParserValue::bin_to_double);
    EXPECT_NE(none, none);
}

TEST(value_binary_decode, a_size_is_eight_bytes_the_lowest_first) {
    EXPECT_EQ(decoded(unhex("08 07 06 05 04 03 02 01"), 8, ParserValue::bin_to_size), 0x0102030405060708u);
    EXPECT_EQ(decoded(unhex("FF FF FF FF FF FF FF FF"), 8, ParserValue::bin_to_size), ~0ull);
}

TEST(value_binary_decode, a_fixed_width_read_past_the_end_takes_zeros_and_advances) {
    EXPECT_EQ(decoded("", 1, ParserValue::bin_to_bool), false);
    EXPECT_EQ(decoded("", 1, ParserValue::bin_to_char), '\0');
    EXPECT_EQ(decoded("", 4, ParserValue::bin_to_int), 0);
    EXPECT_EQ(decoded("", 8, ParserValue::bin_to_double), 0.0);
    EXPECT_EQ(decoded("", 8, ParserValue::bin_to_size), 0u);
    EXPECT_EQ(decoded(unhex("04 03"), 4, ParserValue::bin_to_int), 0x0304);
    EXPECT_EQ(decoded(unhex("04 03 02 01 05"), 8, ParserValue::bin_to_size), 0x0501020304u);
    const double cut = decoded(unhex("01 00 00"), 8, ParserValue::bin_to_double);
    EXPECT_EQ(cut, std::numeric_limits<double>::denorm_min());
}

TEST(value_binary_decode, reads_far_past_the_end_are_zeros) {
    const CoreVector<char> data = buffer(std::string(16, '\xFF'));
    for (const Position start : {Position{16}, Position{100}, Position{0xFFFFFFFF}, Position{1} << 40}) {
        Position position = start;
        EXPECT_EQ(ParserValue::bin_to_size(data, position), 0u);
        EXPECT_EQ(ParserValue::bin_to_int(data, position), 0);
        EXPECT_FALSE(ParserValue::bin_to_bool(data, position));
        EXPECT_EQ(position, start + 13);
    }
    const CoreVector<char> nothing;
    Position position = 0;
    EXPECT_EQ(ParserValue::bin_to_size(nothing, position), 0u);
    EXPECT_EQ(position, 8u);
}

TEST(value_binary_decode, a_string_ends_at_its_nul) {
    const RecordingLog log;
    EXPECT_EQ(decoded_string({"ab\0cd\0", 6}, 3), "ab");
    EXPECT_EQ(decoded_string({"\0", 1}, 1), "");
    EXPECT_EQ(decoded_string({"\x01\x7F\x80\xFF\0", 5}, 5), "\x01\x7F\x80\xFF");
    EXPECT_TRUE(log.is_empty());
}

TEST(value_binary_decode, a_string_without_its_nul_is_empty_and_reported) {
    RecordingLog log;
    EXPECT_EQ(decoded_string("abc", 3), "");
    EXPECT_EQ(log.take(), one_warning(bad_string));
    EXPECT_EQ(decoded_string("", 0), "");
    EXPECT_EQ(log.take(), one_warning(bad_string));
}

TEST(value_binary_decode, a_string_far_past_the_end_is_empty_and_reported) {
    RecordingLog log;
    Position position = Position{1} << 40;
    EXPECT_EQ(plain(ParserValue::bin_to_string(buffer("abc"), position)), "");
    EXPECT_EQ(log.take(), one_warning(bad_string));
}

TEST(value_binary_decode, a_long_string_is_read_whole) {
    const std::string text(100000, 'x');
    EXPECT_EQ(decoded_string(text + '\0', text.size() + 1), text);
}

TEST(value_binary_decode, binary_data_are_copied) {
    const RecordingLog log;
    EXPECT_EQ(decoded_data(size_field(3) + unhex("00 FF 0A 99"), 11), "00 FF 0A");
    EXPECT_TRUE(log.is_empty());
}

TEST(value_binary_decode, empty_binary_data_are_null) {
    const RecordingLog log;
    EXPECT_EQ(decoded_data(size_field(0) + "rest", 8), "null");
    EXPECT_TRUE(log.is_empty());
}

TEST(value_binary_decode, the_low_half_of_the_size_of_binary_data_counts) {
    const RecordingLog log;
    EXPECT_EQ(decoded_data(size_field(0x7700000002) + "abc", 10), "61 62");
    EXPECT_EQ(decoded_data(size_field(0x7700000000) + "abc", 8), "null");
    EXPECT_TRUE(log.is_empty());
}

TEST(value_binary_decode, binary_data_that_are_cut_are_null_and_reported) {
    RecordingLog log;
    EXPECT_EQ(decoded_data(size_field(3) + "ab", 10), "null");
    EXPECT_EQ(log.take(), one_warning(bad_data));
    EXPECT_EQ(decoded_data(size_field(1), 8), "null");
    EXPECT_EQ(log.take(), one_warning(bad_data));
    EXPECT_EQ(decoded_data(size_field(0xFFFFFFFF) + "ab", 10), "null");
    EXPECT_EQ(log.take(), one_warning(bad_data));
}

TEST(value_binary_decode, nothing_is_composed_below_verbosity_2) {
    RecordingLog errors_only(1);
    EXPECT_EQ(decoded_string("abc", 3), "");
    EXPECT_EQ(decoded_data(size_field(3), 8), "null");
    EXPECT_TRUE(errors_only.is_empty());
}

TEST(value_binary_decode, a_value_is_told_by_its_number) {
    const RecordingLog log;
    EXPECT_EQ(described(unhex("01 01"), 2), "TYPE_BOOL yes");
    EXPECT_EQ(described(unhex("01 00"), 2), "TYPE_BOOL no");
    EXPECT_EQ(described(unhex("01 80"), 2), "TYPE_BOOL yes");
    EXPECT_EQ(described(unhex("02 FF"), 2), "TYPE_CHAR -1");
    EXPECT_EQ(described(unhex("03 FE FF FF FF"), 5), "TYPE_INT -2");
    EXPECT_EQ(described(unhex("04 33 33 33 33 33 33 F3 3F"), 9), "TYPE_DOUBLE 1.2");
    EXPECT_EQ(described(unhex("05 61 62 00"), 4), "TYPE_STRING \"ab\"");
    EXPECT_EQ(described(unhex("05 00"), 2), "TYPE_STRING \"\"");
    EXPECT_EQ(described(unhex("06 02 00 00 00 00 00 00 00 01 FF"), 11), "TYPE_BINARY_DATA 0x01FF00010000");
    EXPECT_EQ(described(unhex("06 00 00 00 00 00 00 00 00"), 9), "TYPE_BINARY_DATA 0x00000000");
    EXPECT_EQ(described(unhex("00 00 00 00 00 00 00 00 00"), 9), "TYPE_GROUP { }");
    EXPECT_TRUE(log.is_empty());
}

TEST(value_binary_decode, a_decoded_value_is_read_as_its_type) {
    const RecordingLog log;
    EXPECT_EQ(decoded_value(unhex("03 FE FF FF FF"), 5)->get_as_int(), -2);
    EXPECT_EQ(plain(decoded_value(unhex("05 61 62 00"), 4)->get_as_string()), "ab");
    const auto value = decoded_value(unhex("06 02 00 00 00 00 00 00 00 01 FF"), 11);
    unsigned int size = 0;
    const void* const data = value->get_as_binary_data(size);
    ASSERT_EQ(size, 2u);
    EXPECT_EQ(hex({static_cast<const char*>(data), size}), "01 FF");
    EXPECT_TRUE(log.is_empty());
}

TEST(value_binary_decode, a_decoded_double_is_finite) {
    const auto of = [](double value) {
        return decoded_value(binary_form::double_value(value), 9)->get_as_double();
    };
    EXPECT_EQ(of(infinity), largest);
    EXPECT_EQ(of(-infinity), -largest);
    EXPECT_EQ(of(std::numeric_limits<double>::quiet_NaN()), -largest);
    EXPECT_EQ(of(-std::numeric_limits<double>::quiet_NaN()), -largest);
    EXPECT_EQ(of(5e-324), 5e-324);
}

TEST(value_binary_decode, a_number_above_6_is_no_value) {
    const RecordingLog log;
    for (int tag = 7; tag < 256; ++tag) {
        EXPECT_EQ(described(std::string(1, static_cast<char>(tag)) + "rest", 1), "null") << tag;
    }
    EXPECT_TRUE(log.is_empty());
}

TEST(value_binary_decode, there_is_no_value_at_the_end_or_past_it) {
    const RecordingLog log;
    const CoreVector<char> data = buffer(std::string(16, '\0'));
    for (const Position start : {Position{16}, Position{17}, Position{1} << 32, Position{1} << 40}) {
        Position position = start;
        EXPECT_EQ(ParserValue::bin_to_value(data, position), nullptr) << start;
        EXPECT_GE(position, start);
    }
    EXPECT_TRUE(log.is_empty());
}

TEST(value_binary_decode, values_that_are_cut_are_what_is_left_with_zeros) {
    const RecordingLog log;
    EXPECT_EQ(described(unhex("01"), 2), "TYPE_BOOL no");
    EXPECT_EQ(described(unhex("02"), 2), "TYPE_CHAR 0");
    EXPECT_EQ(described(unhex("03 05 01"), 5), "TYPE_INT 261");
    EXPECT_EQ(described(unhex("04"), 9), "TYPE_DOUBLE 0.0");
    EXPECT_TRUE(log.is_empty());
}

TEST(value_binary_decode, a_string_value_that_is_cut_is_empty_and_reported) {
    RecordingLog log;
    const auto value = decoded_value(unhex("05 61 62"), 3);
    ASSERT_NE(value, nullptr);
    EXPECT_EQ(log.take(), one_warning(bad_string));
    EXPECT_EQ(written(*value), "\"\"");
}

TEST(value_binary_decode, binary_data_that_are_cut_are_an_empty_value_and_reported) {
    RecordingLog log;
    const auto value = decoded_value(unhex("06 03 00 00 00 00 00 00 00 61"), 10);
    ASSERT_NE(value, nullptr);
    EXPECT_EQ(log.take(), one_warning(bad_data));
    EXPECT_EQ(written(*value), "0x00000000");
}

TEST(value_binary_decode, a_group_value_is_read_with_what_is_in_it) {
    const RecordingLog log;
    const std::string inner = binary_form::entry("c", binary_form::string_value("x"));
    const std::string bytes =
        binary_form::group_value(binary_form::entry("b", binary_form::group_value(inner)));
    EXPECT_EQ(described(bytes + "rest", bytes.size()), R"(TYPE_GROUP { b { c "x" } })");
    EXPECT_TRUE(log.is_empty());
}

TEST(value_binary_decode, a_group_value_that_fails_holds_what_was_read) {
    RecordingLog log;
    const std::string entries = binary_form::entry("a", binary_form::int_value(1)) +
                                binary_form::entry("b", binary_form::word_value());
    const auto value = decoded_value(binary_form::group_value(entries), 1 + 8 + entries.size());
    ASSERT_NE(value, nullptr);
    EXPECT_TRUE(log.is_empty());
    EXPECT_EQ(written(*value), "{ a 1 }");
}

TEST(value_binary_decode, a_group_value_that_is_too_large_is_an_empty_group) {
    RecordingLog log;
    const auto value = decoded_value('\0' + size_field(100) + "abc", 9);
    ASSERT_NE(value, nullptr);
    EXPECT_EQ(log.take(),
              one_warning("ParserGroup.set_binary: ParserGroup size larger than the given data\n"));
    EXPECT_EQ(written(*value), "{ }");
}

TEST(value_binary_decode, the_group_of_a_value_has_neither_a_name_nor_a_source_entry) {
    ParserEntry entry("e", ParserEntry::TYPE_ENTRY, 0, 0);
    core_uint64 position = 0;
    ASSERT_TRUE(entry.set_binary(buffer(binary_form::entry_body(binary_form::group_value(""))), position));
    EXPECT_EQ(plain(entry.get_group(0)->get_name()), "");
    EXPECT_EQ(entry.get_group(0)->get_source_entry(), nullptr);
}
