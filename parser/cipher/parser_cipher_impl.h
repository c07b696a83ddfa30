#pragma once

#include "core/core_string.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

/// The cipher of enciphered texts: the bytes, seen as little-endian 32-bit words, plus the output of the
/// MT19937 generator seeded with the sum of the key's bytes. It hides a text from a casual eye; it is not security.
/// docs/formats.md describes the block byte by byte.
namespace bk {

/// The first four bytes of an enciphered file; its block follows.
inline constexpr std::string_view cipher_magic = "KWBF";

/// The sum of the key's bytes, each taken as signed.
std::uint32_t cipher_seed(std::string_view key) noexcept;

/// The size of the block that holds an enciphered text of `length` bytes.
std::uint64_t cipher_block_size(std::uint64_t length) noexcept;

/// Enciphers `text` into `block`, which has room for cipher_block_size(text.size()) bytes.
void encipher(std::string_view text, std::string_view key, unsigned char* block) noexcept;

/// The length that the block states for its text; missing bytes count as zero. Under a wrong key it is any 64-bit number.
std::uint64_t announced_cipher_length(std::string_view block, std::string_view key) noexcept;
/// Its low 32 bits.
inline std::uint32_t peek_cipher_length(std::string_view block, std::string_view key) noexcept {
    return static_cast<std::uint32_t>(announced_cipher_length(block, key));
}

/// Deciphers a block. Returns false, and leaves `text` as it was, when the length that the block states does not fit or its size
/// is no multiple of 4. A block of no bytes holds the empty text. A wrong key may pass.
bool decipher(std::string_view block, std::string_view key, CoreString& text);

/// Deciphers everything after the length, whatever the length says, and returns the length. The block must have at least 8 bytes and
/// a size that is a multiple of 4. Drops what does not fit into a string.
std::uint64_t decipher_words(std::string_view block, std::string_view key, CoreString& text);

} // namespace bk
