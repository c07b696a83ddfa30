#include "parser/parser_file.h"
#include "tests/support/cipher_reference.h"
#include "tests/support/plain_text.h"
#include "tests/support/recording_log.h"

#include <gtest/gtest.h>

namespace {

using cipher_reference::enciphered;

const std::string plain_scene = " a 1 b { c \"x\" }";

void fill(ParserGroup& group) {
    group.add_entry("a", 0, 0)->add_int(1);
    group.add_group("b")->add_entry("c", 0, 0)->add_string("x");
}

/// Writes the group's encrypted text to an array that holds `before`, and returns what the array holds then.
std::string array_of(const ParserGroup& group, const CoreString& key, bool braces = false,
                     bool pretty = false, unsigned int level = 1, std::string_view before = "old") {
    CoreArray<unsigned char> data = byte_array(before);
    group.get_encrypted_text(data, key, braces, pretty, level);
    return bytes_of(data);
}

std::string string_of(const ParserGroup& group, const CoreString& key, bool braces = false,
                      bool pretty = false, unsigned int level = 1) {
    CoreString text("old");
    group.get_encrypted_text(text, key, braces, pretty, level);
    return plain(text);
}

class CipherText : public testing::Test {
protected:
    CipherText() : group("g") { fill(group); }

    RecordingLog log;
    ParserGroup group;
};

} // namespace

using cipher_text = CipherText;

TEST_F(cipher_text, the_bytes_of_a_group_are_its_text_enciphered) {
    EXPECT_EQ(hex(array_of(group, "key")), hex(enciphered(plain_scene, "key")));
    EXPECT_EQ(hex(array_of(group, "")), hex(enciphered(plain_scene, "")));
    EXPECT_EQ(hex(array_of(group, "\x80\xFF")), hex(enciphered(plain_scene, "\x80\xFF")));
    EXPECT_TRUE(log.is_empty());
}

TEST_F(cipher_text, the_layout_of_a_group_is_that_asked_for) {
    for (const bool braces : {false, true}) {
        for (const bool pretty : {false, true}) {
            for (unsigned int level = 1; level < 4; ++level) {
                CoreString text;
                group.get_text(text, braces, pretty, level);
                const std::string expected = enciphered(plain(text), "key");
                EXPECT_EQ(hex(array_of(group, "key", braces, pretty, level)), hex(expected));
                EXPECT_EQ(string_of(group, "key", braces, pretty, level), dense_hex(expected) + plain(text));
            }
        }
    }
}

TEST_F(cipher_text, the_old_bytes_are_replaced_whatever_their_number) {
    const std::string expected = enciphered(plain_scene, "key");
    EXPECT_EQ(hex(array_of(group, "key", false, false, 1, "")), hex(expected));
    EXPECT_EQ(hex(array_of(group, "key", false, false, 1, std::string(1000, 'x'))), hex(expected));
}

TEST_F(cipher_text, the_string_of_a_group_is_upper_case_digits_and_then_the_plain_text) {
    EXPECT_EQ(string_of(group, "key"), dense_hex(enciphered(plain_scene, "key")) + plain_scene);
}

TEST_F(cipher_text, an_empty_group_leaves_the_outputs_as_they_were) {
    group.clear();
    EXPECT_EQ(array_of(group, "key"), "old");
    EXPECT_EQ(string_of(group, "key"), "old");
    EXPECT_EQ(array_of(group, "key", true), enciphered("g { }", "key")) << "braces are a text";
}

TEST_F(cipher_text, a_text_of_four_bytes_needs_no_zeros) {
    group.clear();
    group.add_entry("a", 0, 0)->add_int(1);
    EXPECT_EQ(array_of(group, "key"), cipher_reference::shifted(size_field(4) + " a 1", "key", true));
    EXPECT_EQ(array_of(group, "key").size(), 12u);
}

TEST_F(cipher_text, a_text_of_five_bytes_is_filled_up_with_three_zeros) {
    group.clear();
    group.add_entry("a", 0, 0)->add_int(12);
    EXPECT_EQ(array_of(group, "key"),
              cipher_reference::shifted(size_field(5) + " a 12" + std::string(3, '\0'), "key", true));
    EXPECT_EQ(array_of(group, "key").size(), 16u);
}

TEST_F(cipher_text, keys_of_the_same_bytes_in_another_order_encipher_alike) {
    EXPECT_EQ(array_of(group, "lantern"), array_of(group, "nretnal"));
    EXPECT_EQ(array_of(group, "ad"), array_of(group, "bc"));
    EXPECT_NE(array_of(group, "lantern"), array_of(group, "lanterns"));
}

TEST_F(cipher_text, a_nul_in_the_key_is_a_byte_of_it) {
    EXPECT_EQ(array_of(group, CoreString("a\0b", 3)), enciphered(plain_scene, "ab"));
}

TEST_F(cipher_text, the_group_is_as_it_was_afterwards) {
    array_of(group, "key");
    string_of(group, "key");
    EXPECT_EQ(written(group), "g { a 1 b { c \"x\" } }");
}

TEST_F(cipher_text, the_bytes_of_an_entry_are_its_text_enciphered) {
    const ParserEntry& entry = *group.get_entry("b");
    for (const bool pretty : {false, true}) {
        for (unsigned int level = 1; level < 4; ++level) {
            CoreString text;
            entry.get_text(text, pretty, level);
            CoreArray<unsigned char> data = byte_array("old");
            entry.get_encrypted_text(data, "key", pretty, level);
            EXPECT_EQ(hex(bytes_of(data)), hex(enciphered(plain(text), "key")));
        }
    }
    EXPECT_TRUE(log.is_empty());
}

TEST_F(cipher_text, the_string_of_an_entry_is_the_digits_and_nothing_after_them) {
    CoreString text("old");
    group.get_entry("a")->get_encrypted_text(text, "key", false, 1);
    EXPECT_EQ(plain(text), dense_hex(enciphered("a 1", "key")));
}

TEST_F(cipher_text, an_entry_without_a_text_leaves_the_outputs_as_they_were) {
    ParserEntry& raw = *group.add_entry("raw", 0, 0);
    raw.add_string("");
    raw.set_as_raw_text(true);
    CoreArray<unsigned char> data = byte_array("old");
    raw.get_encrypted_text(data, "key", false, 1);
    EXPECT_EQ(bytes_of(data), "old");
    CoreString text("old");
    raw.get_encrypted_text(text, "key", false, 1);
    EXPECT_EQ(plain(text), "old");
}

TEST_F(cipher_text, bytes_of_every_kind_are_enciphered) {
    std::string bytes;
    for (int code = 0; code < 256; ++code) {
        bytes += static_cast<char>(code);
    }
    group.clear();
    group.add_entry("a", 0, 0)->add_string(core(bytes));
    CoreString text;
    group.get_text(text, false, false, 1);
    EXPECT_EQ(hex(array_of(group, "key")), hex(enciphered(plain(text), "key")));
}

TEST_F(cipher_text, a_text_of_many_rounds_of_the_generator_is_enciphered_to_its_end) {
    for (const unsigned int size : {2480u, 2490u, 2500u, 40000u}) {
        const std::string text(size, 'x');
        group.clear();
        group.add_entry("a", 0, 0)->add_string(core(text));
        EXPECT_TRUE(array_of(group, "key") == enciphered(" a \"" + text + "\"", "key")) << size;
    }
}
