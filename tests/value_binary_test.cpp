#include "parser/parser_file.h"

#include "tests/support/binary_form.h"
#include "tests/support/recording_log.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();

/// The bytes that an encoder appended to a buffer of one byte. Expects it to count them correctly.
template <class Encode>
std::string encoded(unsigned long long expected_count, Encode encode) {
    CoreVector<char> out = buffer("*");
    EXPECT_EQ(encode(out), expected_count);
    EXPECT_EQ(out.get_count(), expected_count + 1);
    EXPECT_EQ(out[0], '*');
    return hex(bytes_of(out).substr(1));
}

/// The binary form of a value. The buffer and the count are not empty before. Expects no message.
std::string binary_of(const ParserValue& value, bool with_type = true) {
    RecordingLog log;
    CoreVector<char> out = buffer("*");
    unsigned long long count = 1000;
    value.get_binary(out, count, with_type);
    EXPECT_EQ(count, 1000 + out.get_count() - 1);
    EXPECT_EQ(out[0], '*');
    EXPECT_TRUE(log.is_empty());
    return hex(bytes_of(out).substr(1));
}

ParserValue as_read(ParserValue::Type type, std::string_view text) {
    return ParserValue(type, core(text));
}

} // namespace

TEST(value_binary, a_bool_is_one_byte) {
    EXPECT_EQ(encoded(1, [](auto& out) { return ParserValue::bool_to_bin(out, true); }), "01");
    EXPECT_EQ(encoded(1, [](auto& out) { return ParserValue::bool_to_bin(out, false); }), "00");
}

TEST(value_binary, a_char_is_its_byte) {
    for (int code = 0; code < 256; ++code) {
        const char character = static_cast<char>(code);
        EXPECT_EQ(encoded(1, [&](auto& out) { return ParserValue::char_to_bin(out, character); }),
                  hex(std::string(1, character)));
    }
}

TEST(value_binary, an_int_is_four_bytes_the_lowest_first) {
    const auto of = [](int value) {
        return encoded(4, [&](auto& out) { return ParserValue::int_to_bin(out, value); });
    };
    EXPECT_EQ(of(0x01020304), "04 03 02 01");
    EXPECT_EQ(of(-2), "FE FF FF FF");
    EXPECT_EQ(of(std::numeric_limits<int>::min()), "00 00 00 80");
    EXPECT_EQ(of(std::numeric_limits<int>::max()), "FF FF FF 7F");
}

TEST(value_binary, a_double_is_its_eight_bytes_the_lowest_first) {
    const auto of = [](double value) {
        return encoded(8, [&](auto& out) { return ParserValue::double_to_bin(out, value); });
    };
    EXPECT_EQ(of(1.2), "33 33 33 33 33 33 F3 3F");
    EXPECT_EQ(of(-0.0), "00 00 00 00 00 00 00 80");
    EXPECT_EQ(of(infinity), "00 00 00 00 00 00 F0 7F") << "an encoder does not clamp";
}

TEST(value_binary, a_size_is_eight_bytes_the_lowest_first) {
    const auto of = [](unsigned long long value) {
        return encoded(8, [&](auto& out) { return ParserValue::size_to_bin(out, value); });
    };
    EXPECT_EQ(of(0), "00 00 00 00 00 00 00 00");
    EXPECT_EQ(of(0x0102030405060708), "08 07 06 05 04 03 02 01");
    EXPECT_EQ(of(~0ull), "FF FF FF FF FF FF FF FF");
}

TEST(value_binary, a_string_ends_with_a_nul) {
    const auto of = [](std::string_view text) {
        return encoded(text.size() + 1,
                       [&](auto& out) { return ParserValue::string_to_bin(out, core(text)); });
    };
    EXPECT_EQ(of(""), "00");
    EXPECT_EQ(of("ab"), "61 62 00");
    EXPECT_EQ(of("\x01\x7F\x80\xFF"), "01 7F 80 FF 00");
    EXPECT_EQ(of({"a\0b", 3}), "61 00 62 00");
}

TEST(value_binary, binary_data_may_lie_in_the_buffer_they_are_appended_to) {
    for (unsigned int size = 1; size <= 70; ++size) {
        CoreVector<char> out;
        for (unsigned int i = 0; i < size; ++i) {
            out.add(static_cast<char>(i + 1));
        }
        const std::string bytes(out.begin(), out.end());
        EXPECT_EQ(ParserValue::binary_data_to_bin(out, out.get_data(), size), size + 8u);
        EXPECT_EQ(std::string(out.begin(), size), bytes);
        EXPECT_EQ(std::string(out.begin() + size + 8, out.end()), bytes);
    }
}

TEST(value_binary, buffers_grow_by_doubling) {
    CoreVector<char> text;
    ParserValue::string_to_bin(text, CoreString("a text of 20 letters"));
    EXPECT_EQ(text.get_capacity(), 32u);
    CoreVector<char> number;
    ParserValue::int_to_bin(number, 1);
    EXPECT_EQ(number.get_capacity(), 4u);
    ParserValue::bool_to_bin(number, true);
    EXPECT_EQ(number.get_capacity(), 8u);
    EXPECT_EQ(ParserFile(CoreString()).get_binary().get_capacity(), 16u);
}

TEST(value_binary, binary_data_follow_their_size) {
    std::string bytes("\x00\xFF\x0A", 3);
    EXPECT_EQ(encoded(11, [&](auto& out) { return ParserValue::binary_data_to_bin(out, bytes.data(), 3); }),
              "03 00 00 00 00 00 00 00 00 FF 0A");
    EXPECT_EQ(encoded(8, [&](auto& out) { return ParserValue::binary_data_to_bin(out, nullptr, 0); }),
              "00 00 00 00 00 00 00 00");
}

TEST(value_binary, a_group_is_its_own_binary_form_without_its_name) {
    ParserGroup group("named");
    group.add_entry("a", 0, 0)->add_int(1);
    const std::string expected = hex(binary_form::group(binary_form::entry("a", binary_form::int_value(1))));
    EXPECT_EQ(encoded(24, [&](auto& out) { return ParserValue::group_to_bin(out, group); }), expected);
    EXPECT_EQ(hex(group.get_binary(false)), expected);
}

TEST(value_binary, an_empty_group_is_eight_zero_bytes) {
    EXPECT_EQ(encoded(8, [](auto& out) { return ParserValue::group_to_bin(out, ParserGroup("g")); }),
              "00 00 00 00 00 00 00 00");
}

TEST(value_binary, the_int_1_takes_five_bytes_with_its_type_and_four_without) {
    EXPECT_EQ(binary_of(ParserValue(1)), "03 01 00 00 00");
    EXPECT_EQ(binary_of(ParserValue(1), false), "01 00 00 00");
}

TEST(value_binary, each_type_has_its_number_before_its_bytes) {
    std::string bytes = "\x07";
    EXPECT_EQ(binary_of(ParserValue(static_cast<ParserGroup*>(nullptr))), "00 00 00 00 00 00 00 00 00");
    EXPECT_EQ(binary_of(ParserValue(true)), "01 01");
    EXPECT_EQ(binary_of(ParserValue('A')), "02 41");
    EXPECT_EQ(binary_of(ParserValue(1.2)), "04 33 33 33 33 33 33 F3 3F");
    EXPECT_EQ(binary_of(ParserValue(core("ab"))), "05 61 62 00");
    EXPECT_EQ(binary_of(ParserValue(bytes.data(), 1)), "06 01 00 00 00 00 00 00 00 07");
}

TEST(value_binary, no_type_has_a_number_when_it_is_not_asked_for) {
    std::string bytes = "\x07";
    EXPECT_EQ(binary_of(ParserValue(static_cast<ParserGroup*>(nullptr)), false), "00 00 00 00 00 00 00 00");
    EXPECT_EQ(binary_of(ParserValue(true), false), "01");
    EXPECT_EQ(binary_of(ParserValue('A'), false), "41");
    EXPECT_EQ(binary_of(ParserValue(1.2), false), "33 33 33 33 33 33 F3 3F");
    EXPECT_EQ(binary_of(ParserValue(core("ab")), false), "61 62 00");
    EXPECT_EQ(binary_of(ParserValue(bytes.data(), 1), false), "01 00 00 00 00 00 00 00 07");
}

TEST(value_binary, empty_values_have_their_bytes_too) {
    EXPECT_EQ(binary_of(ParserValue(CoreString())), "05 00");
    EXPECT_EQ(binary_of(ParserValue(nullptr, 0)), "06 00 00 00 00 00 00 00 00");
}

TEST(value_binary, a_bare_word_is_its_number_alone) {
    EXPECT_EQ(binary_of(as_read(ParserValue::TYPE_WORD, "<empty>")), "07");
    EXPECT_EQ(binary_of(as_read(ParserValue::TYPE_WORD, "<empty>"), false), "");
}

TEST(value_binary, an_unknown_type_is_the_low_byte_of_its_number_alone) {
    EXPECT_EQ(binary_of(as_read(static_cast<ParserValue::Type>(9), "x")), "09");
    EXPECT_EQ(binary_of(as_read(static_cast<ParserValue::Type>(0x3A5), "x")), "A5");
    EXPECT_EQ(binary_of(as_read(static_cast<ParserValue::Type>(0x3A5), "x"), false), "");
}

TEST(value_binary, what_was_only_read_from_text_is_converted_first) {
    EXPECT_EQ(binary_of(as_read(ParserValue::TYPE_BOOL, "yes")), "01 01");
    EXPECT_EQ(binary_of(as_read(ParserValue::TYPE_BOOL, "true")), "01 00");
    EXPECT_EQ(binary_of(as_read(ParserValue::TYPE_CHAR, "65")), "02 41");
    EXPECT_EQ(binary_of(as_read(ParserValue::TYPE_CHAR, "-1")), "02 FF");
    EXPECT_EQ(binary_of(as_read(ParserValue::TYPE_INT, "258")), "03 02 01 00 00");
    EXPECT_EQ(binary_of(as_read(ParserValue::TYPE_DOUBLE, "1.20")), "04 33 33 33 33 33 33 F3 3F");
    EXPECT_EQ(binary_of(as_read(ParserValue::TYPE_DOUBLE, "inf")), "04 FF FF FF FF FF FF EF 7F");
    EXPECT_EQ(binary_of(as_read(ParserValue::TYPE_STRING, "ab")), "05 61 62 00");
    EXPECT_EQ(binary_of(as_read(ParserValue::TYPE_BINARY_DATA, "0x01FF00010000")),
              "06 02 00 00 00 00 00 00 00 01 FF");
}

TEST(value_binary, encoding_leaves_the_spelling_that_was_read) {
    const ParserValue value = as_read(ParserValue::TYPE_DOUBLE, "1.50");
    binary_of(value);
    EXPECT_EQ(written(value), "1.50");
}

TEST(value_binary, a_group_value_holds_groups_at_any_depth) {
    auto* const outer = new ParserGroup("outer");
    outer->add_group("b")->add_entry("c", 0, 0)->add_string("x");
    const std::string inner = binary_form::entry("c", binary_form::string_value("x"));
    const std::string expected =
        binary_form::group_value(binary_form::entry("b", binary_form::group_value(inner)));
    EXPECT_EQ(binary_of(ParserValue(outer)), hex(expected));
}

TEST(value_binary, a_cleared_value_is_an_empty_one_of_its_type) {
    std::string bytes = "\x07";
    const auto cleared = [](ParserValue&& value) {
        value.clear();
        return binary_of(value);
    };
    EXPECT_EQ(cleared(ParserValue(new ParserGroup("g"))), "00 00 00 00 00 00 00 00 00");
    EXPECT_EQ(cleared(ParserValue(true)), "01 00");
    EXPECT_EQ(cleared(ParserValue('A')), "02 00");
    EXPECT_EQ(cleared(ParserValue(7)), "03 00 00 00 00");
    EXPECT_EQ(cleared(ParserValue(1.5)), "04 00 00 00 00 00 00 00 00");
    EXPECT_EQ(cleared(ParserValue(core("ab"))), "05 00");
    EXPECT_EQ(cleared(ParserValue(bytes.data(), 1)), "06 00 00 00 00 00 00 00 00");
}
