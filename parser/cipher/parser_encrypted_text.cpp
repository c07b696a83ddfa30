#include "core/reports/core_guard_impl.h"
#include "core/text/core_hexadecimal_impl.h"
#include "parser/cipher/parser_cipher_impl.h"
#include "parser/parser_entry.h"
#include "parser/parser_file.h"
#include "parser/parser_group.h"
#include "parser/text/parser_text_reader_impl.h"
#include "parser/text/parser_text_writer_impl.h"

#include <string_view>
#include <utility>

namespace {

std::string_view view_of(const CoreArray<unsigned char>& data) noexcept {
    return {reinterpret_cast<const char*>(data.get_data()), data.get_count()};
}

/// Replaces `data` with the block and returns true. Leaves `data` as it was when the text is empty or its block too large.
bool encipher_into(CoreArray<unsigned char>& data, const CoreString& text, const CoreString& key,
                   const char* operation) {
    if (text.is_empty()) {
        return false;
    }
    const std::uint64_t size = bk::cipher_block_size(text.get_length());
    if (size > 0xFFFFFFFFu) {
        bk::report_warning(operation, ": text too large\n");
        return false;
    }
    data.resize(static_cast<unsigned int>(size));
    bk::encipher(text.get_view(), key.get_view(), data.get_data());
    return true;
}

void write_hexadecimal(char* out, const CoreArray<unsigned char>& data) noexcept {
    for (const unsigned char byte : data) {
        out = bk::put_hexadecimal(out, byte);
    }
}

/// Replaces `out` with the digits of the enciphered text and then `suffix`. An empty text leaves `out` as it was.
void encipher_into(CoreString& out, const CoreString& text, const CoreString& key, std::string_view suffix,
                   const char* operation) {
    CoreArray<unsigned char> data;
    if (!encipher_into(data, text, key, operation)) {
        return;
    }
    const core_uint64 digit_count = core_uint64{data.get_count()} * 2;
    if (digit_count + suffix.size() > CoreString::max_length) {
        bk::report_warning(operation, ": text too large\n");
        return;
    }
    CoreString made;
    char* const characters = made.resize(static_cast<unsigned int>(digit_count + suffix.size()));
    write_hexadecimal(characters, data);
    suffix.copy(characters + digit_count, suffix.size());
    out = std::move(made);
}

/// The value of an upper-case digit. Does not check: every other character counts by its distance from "0".
constexpr unsigned int digit_value(char character) noexcept {
    const unsigned int code = static_cast<unsigned char>(character);
    return character >= 'A' && character <= 'F' ? code - 'A' + 10 : code - '0';
}

} // namespace

void ParserGroup::get_encrypted_text(CoreArray<unsigned char>& data, const CoreString& key,
                                     const bool& braces, const bool& pretty,
                                     const unsigned int& level) const {
    static constexpr const char* operation = "ParserGroup.get_encrypted_text";
    bk::completed(operation, [&] {
        CoreString plaintext;
        if (bk::print_group(plaintext, *this, braces, pretty, level)) {
            encipher_into(data, plaintext, key, operation);
        }
    });
}

void ParserGroup::get_encrypted_text(CoreString& text, const CoreString& key, const bool& braces,
                                     const bool& pretty, const unsigned int& level) const {
    static constexpr const char* operation = "ParserGroup.get_encrypted_text";
    bk::completed(operation, [&] {
        CoreString plaintext;
        if (bk::print_group(plaintext, *this, braces, pretty, level)) {
            encipher_into(text, plaintext, key, plaintext.get_view(), operation);
        }
    });
}

void ParserEntry::get_encrypted_text(CoreArray<unsigned char>& data, const CoreString& key,
                                     const bool& pretty, const unsigned int& level) const {
    static constexpr const char* operation = "ParserEntry.get_encrypted_text";
    bk::completed(operation, [&] {
        CoreString plaintext;
        if (bk::print_entry(plaintext, *this, pretty, level)) {
            encipher_into(data, plaintext, key, operation);
        }
    });
}

void ParserEntry::get_encrypted_text(CoreString& text, const CoreString& key, const bool& pretty,
                                     const unsigned int& level) const {
    static constexpr const char* operation = "ParserEntry.get_encrypted_text";
    bk::completed(operation, [&] {
        CoreString plaintext;
        if (bk::print_entry(plaintext, *this, pretty, level)) {
            encipher_into(text, plaintext, key, {}, operation);
        }
    });
}

bool ParserGroup::set_encrypted_text(const CoreArray<unsigned char>& data, const CoreString& key) {
    return bk::guarded("ParserGroup.set_encrypted_text", false, [&] {
        CoreString plaintext;
        if (!bk::decipher(view_of(data), key.get_view(), plaintext)) {
            return false;
        }
        return bk::read_text(*this, plaintext, default_parser_serial_version, bk::Progress(nullptr), nullptr,
                             ParserLimits()) != bk::TextResult::stopped;
    });
}

bool ParserGroup::set_encrypted_text(const CoreString& text, const CoreString& key) {
    const unsigned int length = text.get_length();
    if (length % 2 != 0) {
        return false;
    }
    return bk::guarded("ParserGroup.set_encrypted_text", false, [&] {
        CoreArray<unsigned char> data(length / 2);
        const char* const pairs = text.get_data();
        for (unsigned int i = 0; i < length; i += 2) {
            data[i / 2] = static_cast<unsigned char>(16 * digit_value(pairs[i]) + digit_value(pairs[i + 1]));
        }
        return set_encrypted_text(data, key);
    });
}
