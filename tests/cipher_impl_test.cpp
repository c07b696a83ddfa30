#include "parser/cipher/parser_cipher_impl.h"
#include "tests/support/cipher_reference.h"
#include "tests/support/plain_text.h"

#include <gtest/gtest.h>

namespace {

using cipher_reference::enciphered_stating;

std::string block_of(std::string_view text, std::string_view key) {
    std::string block(bk::cipher_block_size(text.size()), '*');
    bk::encipher(text, key, reinterpret_cast<unsigned char*>(block.data()));
    return block;
}

/// The text, or "refused".
std::string deciphered(std::string_view block, std::string_view key) {
    CoreString text("as it was");
    const bool result = bk::decipher(block, key, text);
    if (!result) {
        EXPECT_EQ(plain(text), "as it was");
        return "refused";
    }
    return plain(text);
}

} // namespace

TEST(cipher_seed, is_the_sum_of_the_bytes) {
    EXPECT_EQ(bk::cipher_seed(""), 0u);
    EXPECT_EQ(bk::cipher_seed("a"), 97u);
    EXPECT_EQ(bk::cipher_seed("abc"), 97u + 98 + 99);
    EXPECT_EQ(bk::cipher_seed({"a\0b", 3}), 97u + 98);
}

TEST(cipher_seed, takes_bytes_from_0x80_up_as_negative) {
    EXPECT_EQ(bk::cipher_seed("\x7F"), 127u);
    EXPECT_EQ(bk::cipher_seed("\x80"), 0xFFFFFF80u);
    EXPECT_EQ(bk::cipher_seed("\xFF"), 0xFFFFFFFFu);
    EXPECT_EQ(bk::cipher_seed("\xFF\x01"), 0u);
    EXPECT_EQ(bk::cipher_seed("\xC3\xA4"), static_cast<std::uint32_t>(-61 - 92));
}

TEST(cipher_seed, is_that_of_every_key_with_the_same_sum) {
    EXPECT_EQ(bk::cipher_seed("abc"), bk::cipher_seed("cab"));
    EXPECT_EQ(bk::cipher_seed("ad"), bk::cipher_seed("bc"));
    EXPECT_NE(bk::cipher_seed("abc"), bk::cipher_seed("abd"));
}

TEST(cipher_seed, of_a_long_key_is_its_sum) {
    EXPECT_EQ(bk::cipher_seed(std::string(1000003, 'z')), 122u * 1000003u);
    EXPECT_EQ(bk::cipher_seed(cipher_reference::key_of_seed(12345)), 12345u);
}

TEST(cipher_block, is_the_smallest_multiple_of_4_that_holds_the_length_and_the_text) {
    EXPECT_EQ(bk::cipher_block_size(0), 8u);
    EXPECT_EQ(bk::cipher_block_size(1), 12u);
    EXPECT_EQ(bk::cipher_block_size(4), 12u);
    EXPECT_EQ(bk::cipher_block_size(5), 16u);
    EXPECT_EQ(bk::cipher_block_size(8), 16u);
    EXPECT_EQ(bk::cipher_block_size(0xFFFFFFFF), 0x100000008u);
}

TEST(cipher_block, is_the_length_the_text_and_zeros_plus_the_keystream) {
    for (std::size_t size = 0; size < 40; ++size) {
        std::string text;
        while (text.size() < size) {
            text += static_cast<char>(7 * text.size() + 200);
        }
        for (const char* key : {"", "k", "lantern", "\x80\xFF"}) {
            EXPECT_EQ(hex(block_of(text, key)), hex(cipher_reference::enciphered(text, key))) << size;
        }
    }
}

TEST(cipher_block, of_a_long_text_is_enciphered_to_its_end) {
    const std::string text(100001, 'x');
    EXPECT_TRUE(block_of(text, "key") == cipher_reference::enciphered(text, "key"));
}

TEST(cipher_block, begins_with_the_length_that_is_peeked) {
    EXPECT_EQ(bk::peek_cipher_length(block_of("hello", "key"), "key"), 5u);
    EXPECT_EQ(bk::peek_cipher_length(enciphered_stating(0x700000009, "", "key"), "key"), 9u)
        << "the low half alone";
}

TEST(cipher_block, that_is_cut_is_peeked_with_zeros) {
    const std::string block = block_of("hello", "key");
    for (std::size_t size = 0; size < 4; ++size) {
        const std::string_view cut = std::string_view(block).substr(0, size);
        EXPECT_EQ(bk::peek_cipher_length(cut, "key"), cipher_reference::peeked_length(cut, "key")) << size;
    }
}

TEST(cipher, what_was_enciphered_is_deciphered) {
    for (std::size_t size = 0; size < 40; ++size) {
        const std::string text(size, 'x');
        EXPECT_EQ(deciphered(block_of(text, "key"), "key"), text);
        EXPECT_EQ(deciphered(block_of(text, "key"), "eky"), text);
    }
    const std::string with_nul("a\0b", 3);
    EXPECT_EQ(deciphered(block_of(with_nul, ""), ""), with_nul);
}

TEST(cipher, a_block_of_no_bytes_holds_the_empty_text) {
    EXPECT_EQ(deciphered("", "key"), "");
    EXPECT_EQ(deciphered("", ""), "");
}

TEST(cipher, a_length_that_leaves_bytes_over_is_taken) {
    EXPECT_EQ(deciphered(enciphered_stating(3, "hello world!", "key"), "key"), "hel");
    EXPECT_EQ(deciphered(enciphered_stating(0, "hello world!", "key"), "key"), "");
    EXPECT_EQ(deciphered(enciphered_stating(12, "hello world!", "key"), "key"), "hello world!");
}

TEST(cipher, a_length_that_does_not_fit_after_itself_is_refused) {
    for (const core_uint64 length : {13u, 14u, 19u, 20u, 21u, 1000u}) {
        EXPECT_EQ(deciphered(enciphered_stating(length, "hello world!", "key"), "key"), "refused") << length;
    }
    EXPECT_EQ(deciphered(enciphered_stating(0xFFFFFFFF, "hello world!", "key"), "key"), "refused");
    EXPECT_EQ(deciphered(enciphered_stating(0xFFFFFFF8, "hello world!", "key"), "key"), "refused");
}

TEST(cipher, a_length_of_4_gibibytes_or_more_is_refused) {
    EXPECT_EQ(deciphered(enciphered_stating(0x100000003, "hello world!", "key"), "key"), "refused");
    EXPECT_EQ(deciphered(enciphered_stating(0x8000000000000003, "hello world!", "key"), "key"), "refused");
    EXPECT_EQ(deciphered(enciphered_stating(~core_uint64{7}, "hello world!", "key"), "key"), "refused");
}

TEST(cipher, a_size_that_is_no_multiple_of_4_is_refused) {
    const std::string block = block_of("hi", "key") + block_of("more", "key");
    for (std::size_t size = 8; size <= block.size(); ++size) {
        EXPECT_EQ(deciphered(block.substr(0, size), "key"), size % 4 == 0 && size >= 12 ? "hi" : "refused")
            << size;
    }
}

TEST(cipher, a_block_too_small_for_its_length_field_is_refused) {
    for (std::size_t size = 1; size < 8; ++size) {
        EXPECT_EQ(deciphered(block_of("", "key").substr(0, size), "key"), "refused") << size;
    }
    EXPECT_EQ(deciphered(block_of("", "key"), "key"), "");
}

TEST(cipher, a_wrong_key_is_refused_when_the_length_makes_no_sense) {
    const std::string block = block_of("hello", "key");
    unsigned int passed = 0;
    for (std::uint32_t seed = 0; seed < 2000; ++seed) {
        const std::string key = cipher_reference::key_of_seed(seed);
        const bool result = deciphered(block, key) != "refused";
        EXPECT_EQ(result, cipher_reference::is_sound(block, key)) << seed;
        passed += result ? 1 : 0;
    }
    EXPECT_EQ(passed, 1u) << "the key with the same sum";
}
