#pragma once

#include "core/core_string.h"
#include "tests/support/bytes.h"

#include <cstdint>
#include <random>
#include <string>
#include <string_view>

/// The cipher by its description, with the generator of the standard library.
namespace cipher_reference {

inline std::uint32_t seed(std::string_view key) {
    std::uint32_t sum = 0;
    for (const char byte : key) {
        sum += static_cast<std::uint32_t>(static_cast<int>(static_cast<signed char>(byte)));
    }
    return sum;
}

/// A key whose bytes have this sum.
inline std::string key_of_seed(std::uint32_t sum) {
    constexpr std::uint32_t largest = 127;
    std::string key(sum / largest, static_cast<char>(largest));
    return key + (sum % largest != 0 ? std::string(1, static_cast<char>(sum % largest)) : std::string());
}

/// Adds the keystream to every word, or subtracts it. Of an incomplete last word, keeps the lowest bytes of the sum.
inline std::string shifted(std::string_view bytes, std::string_view key, bool add) {
    std::mt19937 generator(seed(key));
    std::string result;
    for (std::size_t at = 0; at < bytes.size(); at += 4) {
        std::uint32_t word = 0;
        for (std::size_t i = 0; i < 4 && at + i < bytes.size(); ++i) {
            word |= static_cast<std::uint32_t>(static_cast<unsigned char>(bytes[at + i])) << (8 * i);
        }
        const auto output = static_cast<std::uint32_t>(generator());
        result += little(add ? word + output : word - output, 4);
    }
    result.resize(bytes.size());
    return result;
}

/// A block before it is enciphered, which states any given length.
inline std::string plain_block(core_uint64 stated_length, std::string_view text) {
    std::string block = size_field(stated_length) + std::string(text);
    block.resize((block.size() + 3) / 4 * 4);
    return block;
}

inline std::string enciphered(std::string_view text, std::string_view key) {
    return shifted(plain_block(text.size(), text), key, true);
}
/// Encrypts a text, and states a length that may differ from that of the text.
inline std::string enciphered_stating(core_uint64 length, std::string_view text, std::string_view key) {
    return shifted(plain_block(length, text), key, true);
}
inline std::string enciphered_file(std::string_view text, std::string_view key) {
    return "KWBF" + enciphered(text, key);
}

/// The low half of the stated length, with zeros for missing bytes.
inline std::uint32_t peeked_length(std::string_view block, std::string_view key) {
    std::string word(block.substr(0, 4));
    word.resize(4);
    std::uint32_t length = 0;
    for (std::size_t i = 4; i-- > 0;) {
        length = length * 256 + static_cast<unsigned char>(shifted(word, key, false)[i]);
    }
    return length;
}

/// Whether a block can be deciphered: it is empty, or consists of whole words and states a length that fits.
inline bool is_sound(std::string_view block, std::string_view key) {
    if (block.empty() || block.size() % 4 != 0) {
        return block.empty();
    }
    const std::string start = shifted(block.substr(0, 8), key, false);
    return block.size() >= 8 && start.substr(4) == std::string(4, '\0') &&
           peeked_length(block, key) <= block.size() - 8;
}

} // namespace cipher_reference
