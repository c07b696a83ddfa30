#include "parser/parser_file.h"
#include "tests/support/cipher_reference.h"
#include "tests/support/plain_text.h"
#include "tests/support/recording_log.h"
#include "tests/support/tree_equal.h"

#include <gtest/gtest.h>

namespace {

using cipher_reference::enciphered;
using cipher_reference::enciphered_stating;

/// A group that holds an entry "old" and is filled from enciphered texts.
class CipherRead : public testing::Test {
protected:
    CipherRead() : group("g") { group.add_entry("old", 0, 0)->add_int(0); }

    bool set_bytes(std::string_view bytes, const CoreString& key = "key") {
        return group.set_encrypted_text(byte_array(bytes), key);
    }
    bool set_digits(std::string_view digits, const CoreString& key = "key") {
        return group.set_encrypted_text(core(digits), key);
    }
    void expect_unchanged() {
        EXPECT_EQ(written(group), "g { old 0 }");
        EXPECT_TRUE(log.is_empty());
    }

    RecordingLog log;
    ParserGroup group;
};

} // namespace

using cipher_read = CipherRead;

TEST_F(cipher_read, what_the_bytes_hold_is_appended) {
    EXPECT_TRUE(set_bytes(enciphered("a 1 b { c 2 }", "key")));
    EXPECT_EQ(written(group), "g { old 0 a 1 b { c 2 } }");
    EXPECT_TRUE(log.is_empty());
}

TEST_F(cipher_read, what_the_digits_hold_is_appended) {
    EXPECT_TRUE(set_digits(dense_hex(enciphered("a 1 b { c 2 }", "key"))));
    EXPECT_EQ(written(group), "g { old 0 a 1 b { c 2 } }");
    EXPECT_TRUE(log.is_empty());
}

TEST_F(cipher_read, a_key_of_the_same_bytes_in_another_order_will_do) {
    EXPECT_TRUE(set_bytes(enciphered("a 1 ", "key"), "yek"));
    EXPECT_EQ(written(group), "g { old 0 a 1 }");
}

TEST_F(cipher_read, the_empty_key_is_a_key) {
    EXPECT_TRUE(set_bytes(enciphered("a 1 ", ""), ""));
    EXPECT_FALSE(set_bytes(enciphered("a 1 ", ""), "key"));
    EXPECT_EQ(written(group), "g { old 0 a 1 }");
}

TEST_F(cipher_read, texts_of_every_small_size_come_back) {
    for (unsigned int size = 4; size < 30; ++size) {
        ParserGroup source("s");
        source.add_entry("a", 0, 0)->add_string(core(std::string(size, 'x')));
        CoreArray<unsigned char> data;
        source.get_encrypted_text(data, "key", false, true, 1);
        ParserGroup target("s");
        EXPECT_TRUE(target.set_encrypted_text(data, "key"));
        EXPECT_EQ(tree_difference(source, target), "") << size;
    }
}

TEST_F(cipher_read, the_text_of_an_entry_comes_back) {
    ParserEntry entry("a", ParserEntry::TYPE_ENTRY, 0, 0);
    entry.add_int(1);
    CoreString digits;
    entry.get_encrypted_text(digits, "key", false, 1);
    EXPECT_TRUE(group.set_encrypted_text(digits, "key"));
    EXPECT_EQ(written(group), "g { old 0 a 1 }");
}

TEST_F(cipher_read, the_digits_of_a_group_are_followed_by_the_plain_text_which_is_not_part_of_them) {
    ParserGroup source("s");
    source.add_entry("a", 0, 0)->add_int(1);
    CoreString digits_and_text;
    source.get_encrypted_text(digits_and_text, "key", false, false, 1);
    ASSERT_EQ(digits_and_text.get_length(), 24u + 4);
    EXPECT_FALSE(group.set_encrypted_text(digits_and_text, "key"))
        << "four characters more are two bytes more, which is no whole word";
    expect_unchanged();
    EXPECT_TRUE(group.set_encrypted_text(digits_and_text.sub_string(0, 24), "key"));
    EXPECT_EQ(written(group), "g { old 0 a 1 }");
}

TEST_F(cipher_read, whole_words_after_the_text_are_ignored) {
    ParserGroup source("s");
    source.add_entry("a", 0, 0)->add_int(12345);
    CoreString digits_and_text;
    source.get_encrypted_text(digits_and_text, "key", false, false, 1);
    ASSERT_EQ(digits_and_text.get_length(), 32u + 8);
    EXPECT_TRUE(group.set_encrypted_text(digits_and_text, "key"));
    EXPECT_EQ(written(group), "g { old 0 a 12345 }");
    EXPECT_TRUE(set_bytes(enciphered("b 2 ", "key") + "12345678"));
    EXPECT_EQ(written(group), "g { old 0 a 12345 b 2 }");
}

TEST_F(cipher_read, no_bytes_are_the_empty_text) {
    EXPECT_TRUE(set_bytes(""));
    expect_unchanged();
    EXPECT_TRUE(set_digits(""));
    expect_unchanged();
}

TEST_F(cipher_read, an_enciphered_empty_text_is_the_empty_text) {
    EXPECT_TRUE(set_bytes(enciphered("", "key")));
    EXPECT_TRUE(set_digits(dense_hex(enciphered("", "key"))));
    expect_unchanged();
}

TEST_F(cipher_read, faults_of_the_text_are_logged_and_are_no_failure) {
    EXPECT_TRUE(set_bytes(enciphered("a 1 : b", "key")));
    EXPECT_EQ(log.take(),
              (std::vector<LoggedMessage>{{2, "ParserGroup.set_text: (1:4) Unknown word type: ':'\n"},
                                          {2, "ParserGroup.set_text: (1:6) Entry 'b' has no value.\n"}}));
    EXPECT_EQ(written(group), "g { old 0 a 1 }");
}

TEST_F(cipher_read, the_text_is_parsed_as_that_of_the_default_version) {
    EXPECT_TRUE(set_bytes(enciphered("a \"x\\ty\" ", "key")));
    default_parser_serial_version = CoreVersion(1.0);
    EXPECT_TRUE(set_bytes(enciphered("b \"x\\ty\" ", "key")));
    default_parser_serial_version = CoreVersion(1.2);
    EXPECT_EQ(plain(group.get_entry("a")->get_string(0)), "x\ty");
    EXPECT_EQ(plain(group.get_entry("b")->get_string(0)), "x\\ty");
}

TEST_F(cipher_read, nuls_and_bytes_from_0x80_up_come_back) {
    const std::string text("x\0y\x80\xFF", 5);
    EXPECT_TRUE(set_bytes(enciphered("a \"" + text + "\" ", "key")));
    EXPECT_EQ(plain(group.get_entry("a")->get_string(0)), text);
}

TEST_F(cipher_read, there_is_no_preprocessing) {
    EXPECT_TRUE(set_bytes(enciphered("#Brellwick_Serial_Version 1.0\na \"x // y\" ", "key")));
    EXPECT_EQ(written(group), "g { old 0 #Brellwick_Serial_Version 1.0 a \"x // y\" }");
}

TEST_F(cipher_read, a_key_of_another_sum_is_refused) {
    EXPECT_FALSE(set_bytes(enciphered("a 1 b 2", "key"), "kez"));
    EXPECT_FALSE(set_digits(dense_hex(enciphered("a 1 b 2", "key")), ""));
    expect_unchanged();
}

TEST_F(cipher_read, a_length_not_below_the_number_of_bytes_is_refused) {
    for (const core_uint64 length : {16u, 17u, 1000u}) {
        EXPECT_FALSE(set_bytes(enciphered_stating(length, "a 1 b 2 ", "key"))) << length;
    }
    EXPECT_FALSE(set_bytes(enciphered_stating(0xFFFFFFFF, "a 1 b 2 ", "key")));
    expect_unchanged();
}

TEST_F(cipher_read, a_length_that_does_not_fit_after_the_length_field_is_refused) {
    for (core_uint64 length = 9; length < 16; ++length) {
        EXPECT_FALSE(set_bytes(enciphered_stating(length, "a 1 b 2 ", "key"))) << length;
    }
    expect_unchanged();
    EXPECT_TRUE(set_bytes(enciphered_stating(8, "a 1 b 2 ", "key")));
    EXPECT_EQ(written(group), "g { old 0 a 1 b 2 }");
}

TEST_F(cipher_read, a_length_with_a_high_half_is_refused) {
    EXPECT_FALSE(set_bytes(enciphered_stating(0x100000008, "a 1 b 2 ", "key")));
    EXPECT_FALSE(set_digits(dense_hex(enciphered_stating(0x8000000000000008, "a 1 b 2 ", "key"))));
    expect_unchanged();
}

TEST_F(cipher_read, a_number_of_bytes_that_is_no_multiple_of_four_is_refused) {
    const std::string block = enciphered_stating(4, "a 1 b 2 c 3 ", "key");
    for (std::size_t size = 13; size < block.size(); ++size) {
        EXPECT_EQ(set_bytes(block.substr(0, size)), size % 4 == 0) << size;
        EXPECT_EQ(set_digits(dense_hex(block.substr(0, size))), size % 4 == 0) << size;
    }
}

TEST_F(cipher_read, every_cut_is_refused) {
    const std::string block = enciphered("a 1 b 2 ", "key");
    for (std::size_t size = 1; size < block.size(); ++size) {
        EXPECT_FALSE(set_bytes(block.substr(0, size))) << size;
    }
    expect_unchanged();
}

TEST_F(cipher_read, an_odd_number_of_digits_is_refused) {
    const std::string digits = dense_hex(enciphered_stating(4, "a 1 b 2 c 3 ", "key"));
    for (std::size_t size = 1; size < digits.size(); size += 2) {
        EXPECT_FALSE(set_digits(digits.substr(0, size))) << size;
    }
    EXPECT_FALSE(set_digits("0"));
    expect_unchanged();
}

TEST_F(cipher_read, a_digit_is_its_distance_from_zero_and_never_checked) {
    const std::string block = enciphered("a 1 b 2", "key");
    std::string colons = dense_hex(block); // writes ':' to '?' instead of 'A' to 'F'
    for (char& digit : colons) {
        digit = digit >= 'A' ? static_cast<char>(digit - 'A' + ':') : digit;
    }
    EXPECT_NE(colons, dense_hex(block));
    EXPECT_TRUE(set_digits(colons));
    // Spells each byte as '0' and the character whose distance from '0' is the byte.
    std::string whole_bytes;
    for (const char byte : block) {
        const int code = static_cast<unsigned char>(byte) + '0';
        const bool is_letter = code % 256 >= 'A' && code % 256 <= 'F';
        whole_bytes += is_letter ? '1' : '0'; // 'A' to 'F' count as 10 to 15 instead of 17 to 22
        whole_bytes += static_cast<char>(is_letter ? (code - 16) : code);
    }
    EXPECT_TRUE(set_digits(whole_bytes));
    EXPECT_EQ(written(group), "g { old 0 a 1 b 2 a 1 b 2 }");
}

TEST_F(cipher_read, the_first_digit_counts_sixteen_times_modulo_256) {
    // 'P' is 32 above '0', and 16 * 32 = 0 modulo 256. '@' is 16 above '0'.
    std::string digits = dense_hex(enciphered("a 1 b 2", "key"));
    std::size_t changed = 0;
    for (std::size_t i = 0; i < digits.size(); i += 2) {
        if (digits[i] <= '9') {
            digits[i] = digits[i] == '0' ? '@' : static_cast<char>(digits[i] + 32);
            ++changed;
        }
    }
    ASSERT_GT(changed, 0u);
    EXPECT_TRUE(set_digits(digits));
    EXPECT_EQ(written(group), "g { old 0 a 1 b 2 }");
}

TEST_F(cipher_read, lower_case_digits_are_other_bytes) {
    std::string digits = dense_hex(enciphered("a 1 b 2", "key"));
    for (char& digit : digits) {
        digit = digit >= 'A' ? static_cast<char>(digit - 'A' + 'a') : digit;
    }
    EXPECT_FALSE(set_digits(digits)) << "the length is another one";
    expect_unchanged();
}

TEST_F(cipher_read, a_lower_case_digit_is_its_distance_from_zero) {
    // 'a' to 'f' are 49 to 54 above '0': their low half is 1 to 6, and their high half adds 3 to the first
    // digit.
    static constexpr std::string_view upper = "0123456789ABCDEF";
    std::string digits;
    std::size_t lower = 0;
    for (const char byte : enciphered("a 1 b 2", "key")) {
        const std::size_t high = static_cast<unsigned char>(byte) / 16;
        const std::size_t low = static_cast<unsigned char>(byte) % 16;
        const bool can_be_lower = low >= 1 && low <= 6;
        digits += upper[can_be_lower ? (high + 13) % 16 : high];
        digits += can_be_lower ? static_cast<char>('a' + low - 1) : upper[low];
        lower += can_be_lower ? 1 : 0;
    }
    ASSERT_GT(lower, 2u);
    EXPECT_TRUE(set_digits(digits));
    EXPECT_EQ(written(group), "g { old 0 a 1 b 2 }");
}

TEST_F(cipher_read, any_character_may_stand_for_a_digit) {
    std::string digits = dense_hex(enciphered("a 1 ", "key") + "over");
    digits.replace(digits.size() - 8, 8, "z \n\xFF\"-/~");
    EXPECT_TRUE(set_digits(digits));
    EXPECT_EQ(written(group), "g { old 0 a 1 }");
}
