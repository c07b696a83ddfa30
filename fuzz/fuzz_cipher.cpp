#include "fuzz/input.h"
#include "parser/parser_file.h"
#include "tests/support/cipher_reference.h"
#include "tests/support/counting_log.h"
#include "tests/support/memory_disk.h"
#include "tests/support/plain_text.h"
#include "tests/support/tree_equal.h"

namespace {

std::string print(const ParserGroup& group) {
    CoreString text;
    group.get_text(text, false, false, 1);
    return plain(text);
}

/// Deciphers a block of any bytes. This succeeds exactly when the block is sound, and then gives the same
/// text as the reference.
void take_block(std::string_view block, const std::string& key) {
    ParserGroup group("g");
    const bool result = group.set_encrypted_text(byte_array(block), core(key));
    require(result == cipher_reference::is_sound(block, key), "a sound block is deciphered, no other");
    ParserGroup expected("g");
    if (result && !block.empty()) {
        const std::size_t length = cipher_reference::peeked_length(block, key);
        const std::string text = cipher_reference::shifted(block, key, false).substr(8, length);
        expected.set_text(core(text), CoreVersion(1.2), nullptr);
    }
    require_none(tree_difference(group, expected), "a block holds the text that was enciphered");
}

/// Reads a string of any characters as hexadecimal digits. It must give the same result as the bytes that
/// they spell.
void take_digits(std::string_view digits, const std::string& key) {
    const auto value = [](char digit) {
        const unsigned int code = static_cast<unsigned char>(digit);
        return digit >= 'A' && digit <= 'F' ? code - 'A' + 10 : code - '0';
    };
    std::string block;
    for (std::size_t i = 0; i + 1 < digits.size(); i += 2) {
        block += static_cast<char>(static_cast<unsigned char>(16 * value(digits[i]) + value(digits[i + 1])));
    }
    ParserGroup group("g");
    ParserGroup expected("g");
    const bool result = group.set_encrypted_text(core(digits), core(key));
    require(result == (digits.size() % 2 == 0 && expected.set_encrypted_text(byte_array(block), core(key))),
            "digits do what their bytes do");
    require_none(tree_difference(group, expected), "digits say what their bytes say");
}

/// Enciphers a text, and compares the block with the reference. Deciphering must give the text again.
void take_text(std::string_view text, const std::string& key) {
    ParserGroup group("g");
    group.set_text(core(text), CoreVersion(1.2), nullptr);
    const std::string printed = print(group);
    CoreArray<unsigned char> block;
    group.get_encrypted_text(block, core(key), false, false, 1);
    require(bytes_of(block) == (printed.empty() ? "" : cipher_reference::enciphered(printed, key)),
            "the block is as described");
    CoreString digits;
    group.get_encrypted_text(digits, core(key), false, false, 1);
    require(plain(digits) == (printed.empty() ? "" : dense_hex(bytes_of(block)) + printed),
            "the digits are as described");
    take_block(bytes_of(block), key);
    take_digits(digits.get_view().substr(0, 2 * std::size_t{block.get_count()}), key);
    take_digits(digits.get_view(), key);
    for (const ParserEntry* entry : group.get_entries()) {
        CoreString one;
        entry->get_encrypted_text(one, core(key), false, 1);
        require(plain(one) == dense_hex(cipher_reference::enciphered(written(*entry), key)),
                "the digits of an entry are as described");
    }
}

void take_file(const std::string& bytes, const std::string& key) {
    MemoryDisk disk;
    disk.files["a"] = bytes;
    ParserFile file("a");
    const bool result = file.read("", core(key), nullptr);
    require(result || file.get_root().get_entries().is_empty(), "a file that fails leaves nothing");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzInput input(data, size);
    const CountingLog log;
    const unsigned int kind = input.choose(8);
    std::string key;
    for (unsigned int length = input.choose(4); length > 0; --length) {
        key += static_cast<char>(static_cast<unsigned char>(input.choose(256)));
    }
    const std::string_view rest = input.rest();
    switch (kind) {
    case 0:
        take_block(rest, key);
        break;
    case 1: // the block for a known plain form
        take_block(cipher_reference::shifted(rest, key, true), key);
        break;
    case 2:
        take_digits(rest, key);
        break;
    case 3:
        take_digits(dense_hex(cipher_reference::shifted(rest, key, true)), key);
        break;
    case 4:
        take_file(std::string(rest), key);
        break;
    case 5:
        take_file("KWBF" + cipher_reference::shifted(rest, key, true), key);
        break;
    case 6:
        take_file(cipher_reference::enciphered_file(rest, key), key);
        break;
    default:
        take_text(rest, key);
    }
    return 0;
}
