#include "core/core_memory.h"
#include "parser/parser_value.h"
#include "parser/parser_word.h"

#include "tests/support/plain_text.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <random>
#include <string>

using namespace std::literals;

namespace {

std::string bytes_of(const ParserValue& value) {
    unsigned int size = 0;
    const void* data = value.get_as_binary_data(size);
    return data == nullptr ? std::string() : std::string(static_cast<const char*>(data), size);
}

ParserValue value_of(std::string bytes) {
    return ParserValue(bytes.data(), static_cast<unsigned int>(bytes.size()));
}

/// A second implementation of the literal.
std::string literal(const std::string& bytes) {
    std::string text = "0x";
    char digits[3];
    std::uint32_t sum = 0;
    for (const char byte : bytes) {
        std::snprintf(digits, sizeof(digits), "%02X",
                      static_cast<unsigned int>(static_cast<unsigned char>(byte)));
        text += digits;
        sum += static_cast<unsigned char>(byte);
    }
    for (int i = 0; i < 4; ++i) {
        std::snprintf(digits, sizeof(digits), "%02X", (sum >> (8 * i)) & 0xFFu);
        text += digits;
    }
    return text;
}

std::string decoded(const std::string& text) {
    OwnedWord word(text);
    int marker = 0;
    void* data = &marker;
    unsigned int size = 77;
    ParserValue::word_to_binary_data(data, size, *word);
    EXPECT_NE(data, &marker);
    EXPECT_NE(size, 77u);
    EXPECT_EQ(data == nullptr, size == 0);
    const std::string bytes = data == nullptr ? std::string() : std::string(static_cast<char*>(data), size);
    CoreMemory::release(data, size);
    return bytes;
}

TEST(value_binary_data, it_is_written_as_hexadecimal_digits_and_a_sum_of_its_bytes) {
    EXPECT_EQ(written(value_of("\x01\xFF")), "0x01FF00010000");
    EXPECT_EQ(written(value_of("")), "0x00000000");
    EXPECT_EQ(written(value_of("\0"s)), "0x0000000000");
    EXPECT_EQ(written(value_of("\xAB\xCD\xEF")), "0xABCDEF67020000");
}

TEST(value_binary_data, every_byte_is_written_and_read) {
    std::string bytes;
    for (int i = 0; i < 256; ++i) {
        bytes += static_cast<char>(i);
    }
    const std::string text = written(value_of(bytes));
    EXPECT_EQ(text, literal(bytes));
    EXPECT_EQ(text.size(), 10u + 2 * 256);
    EXPECT_EQ(decoded(text), bytes);
}

TEST(value_binary_data, the_sum_wraps_at_thirty_two_bits) {
    const unsigned int count = 16843010; // 255 times this is slightly above 2^32
    const std::string text = written(value_of(std::string(count, '\xFF')));
    ASSERT_EQ(text.size(), 10u + 2u * count);
    EXPECT_EQ(text.substr(text.size() - 10), "FFFE000000");
}

TEST(value_binary_data, short_and_odd_literals_are_empty) {
    for (const char* text : {"0x", "0x1", "0x00", "0x000000", "0x0000000", "0x00000000", "0x000000001",
                             "0x01FF0001000", "0x01FF000100000", "", "a"}) {
        EXPECT_EQ(decoded(text), "") << text;
    }
}

TEST(value_binary_data, the_shortest_literal_with_content_has_twelve_characters) {
    EXPECT_EQ(decoded("0x4100000000"), "A");
    EXPECT_EQ(decoded("0x414200000000"), "AB");
}

TEST(value_binary_data, only_upper_case_digits_count_and_a_pair_with_another_character_is_zero) {
    EXPECT_EQ(decoded("0x01ff00010000"), "\x01\0"s);
    EXPECT_EQ(decoded("0xFfAaAB00000000"), "\0\0\xAB"s);
    EXPECT_EQ(decoded("0xG1A0--00000000"), "\0\xA0\0"s);
    EXPECT_EQ(decoded("0x1 1\x80\xFF\xFF"
                      "00000000"),
              "\0\0\0"s);
    EXPECT_EQ(decoded("0x:/@100000000"), "\0\0"s);
    EXPECT_EQ(decoded("0x\0\0"
                      "4100000000"s),
              "\0A"s);
}

TEST(value_binary_data, neither_the_beginning_nor_the_checksum_is_examined) {
    EXPECT_EQ(decoded("zz41--------"), "A");
    EXPECT_EQ(decoded("0x41DEADBEEF"), "A");
    EXPECT_EQ(decoded("0x41\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF"), "A");
}

TEST(value_binary_data, the_word_alone_is_decoded_wherever_it_stands_in_its_text) {
    const CoreString text("key 0x4142000000000000 0x43");
    ParserWord word(text, false, CoreVersion(1.2));
    for (unsigned int i = 4; i < 18; ++i) {
        word += i;
    }
    void* data = nullptr;
    unsigned int size = 0;
    ParserValue::word_to_binary_data(data, size, word);
    EXPECT_EQ(std::string(static_cast<char*>(data), size), "AB");
    CoreMemory::release(data, size);
}

TEST(value_binary_data, the_words_older_string_rule_does_not_matter) {
    OwnedWord word("0x414200000000", 1.0);
    void* data = nullptr;
    unsigned int size = 0;
    ParserValue::word_to_binary_data(data, size, *word);
    EXPECT_EQ(std::string(static_cast<char*>(data), size), "AB");
    CoreMemory::release(data, size);
}

TEST(value_binary_data, random_bytes_come_back_from_their_literal) {
    std::mt19937 random(21);
    for (int round = 0; round < 500; ++round) {
        std::string bytes(random() % 300, '\0');
        for (char& byte : bytes) {
            byte = static_cast<char>(random());
        }
        const std::string text = written(value_of(bytes));
        ASSERT_EQ(text, literal(bytes));
        ASSERT_EQ(decoded(text), bytes);
        const ParserValue read(ParserValue::TYPE_BINARY_DATA, CoreString(std::string_view(text)));
        ASSERT_EQ(bytes_of(read), bytes);
        ASSERT_EQ(written(read), text);
    }
}

TEST(value_binary_data, it_is_written_the_same_way_again_after_a_change_of_the_bytes_by_a_setter) {
    ParserValue value = value_of("abc");
    EXPECT_EQ(written(value), literal("abc"));
    char other[] = "xyz!";
    value.set_binary_data(other, 4);
    EXPECT_EQ(written(value), literal("xyz!"));
}

} // namespace
