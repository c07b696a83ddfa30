#include "parser/cipher/parser_cipher_impl.h"

#include "core/text/core_bytes_impl.h"
#include "parser/cipher/parser_keystream_impl.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace bk {

namespace {

constexpr std::size_t word_size = 4;
constexpr std::size_t length_size = 8;

const unsigned char* bytes_of(std::string_view text) noexcept {
    return reinterpret_cast<const unsigned char*>(text.data());
}

std::uint64_t decipher_length(std::string_view block, Keystream& keystream) noexcept {
    unsigned char length[length_size] = {};
    block.copy(reinterpret_cast<char*>(length), length_size);
    keystream.subtract_from(length, length, length_size / word_size);
    return load_le64(length);
}

/// The text of so many bytes that follows the length of a block.
void decipher_text(std::string_view block, Keystream& keystream, std::size_t length, CoreString& text) {
    auto* const out = reinterpret_cast<unsigned char*>(text.resize(static_cast<unsigned int>(length)));
    const unsigned char* const in = bytes_of(block) + length_size;
    const std::size_t whole = length / word_size * word_size;
    keystream.subtract_from(in, out, whole / word_size);
    if (whole != length) {
        unsigned char last[word_size];
        keystream.subtract_from(in + whole, last, 1);
        std::memcpy(out + whole, last, length - whole);
    }
}

} // namespace

std::uint32_t cipher_seed(std::string_view key) noexcept {
    std::uint32_t seed = 0;
    for (const char character : key) {
        seed += static_cast<std::uint32_t>(static_cast<signed char>(character));
    }
    return seed;
}

std::uint64_t cipher_block_size(std::uint64_t length) noexcept {
    return (length + length_size + word_size - 1) / word_size * word_size;
}

void encipher(std::string_view text, std::string_view key, unsigned char* block) noexcept {
    Keystream keystream(cipher_seed(key));
    store_le64(block, text.size());
    keystream.add_to(block, block, length_size / word_size);

    const std::size_t whole = text.size() / word_size * word_size;
    block += length_size;
    keystream.add_to(bytes_of(text), block, whole / word_size);
    if (whole != text.size()) {
        unsigned char last[word_size] = {};
        text.copy(reinterpret_cast<char*>(last), word_size, whole);
        keystream.add_to(last, block + whole, 1);
    }
}

std::uint64_t announced_cipher_length(std::string_view block, std::string_view key) noexcept {
    Keystream keystream(cipher_seed(key));
    return decipher_length(block, keystream);
}

bool decipher(std::string_view block, std::string_view key, CoreString& text) {
    if (block.empty()) {
        text.clear();
        return true;
    }
    if (block.size() < length_size || block.size() % word_size != 0) {
        return false;
    }
    Keystream keystream(cipher_seed(key));
    const std::uint64_t length = decipher_length(block, keystream);
    if (length > block.size() - length_size || length > CoreString::max_length) {
        return false;
    }
    CoreString plaintext; // the block may lie in `text`
    decipher_text(block, keystream, static_cast<std::size_t>(length), plaintext);
    text = std::move(plaintext);
    return true;
}

std::uint64_t decipher_words(std::string_view block, std::string_view key, CoreString& text) {
    Keystream keystream(cipher_seed(key));
    const std::uint64_t announced = decipher_length(block, keystream);
    CoreString plaintext; // the block may lie in `text`
    const std::size_t longest = CoreString::max_length / word_size * word_size;
    decipher_text(block, keystream, std::min(block.size() - length_size, longest), plaintext);
    text = std::move(plaintext);
    return announced;
}

} // namespace bk
