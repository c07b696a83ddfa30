#include "core/text/core_utf8_impl.h"
#include "document/json/json_words_impl.h"
#include "document/json/read/json_reader_impl.h"

/// Parses JSON strings.
namespace bk_parser {

namespace {

constexpr unsigned int first_surrogate = 0xD800;
constexpr unsigned int first_low_surrogate = 0xDC00;
constexpr unsigned int last_surrogate = 0xDFFF;

/// The character that an escape means; NUL for an unknown escape.
char escaped(char character) noexcept {
    switch (character) {
    case '"':
    case '\\':
    case '/':
        return character;
    case 'b':
        return '\b';
    case 'f':
        return '\f';
    case 'n':
        return '\n';
    case 'r':
        return '\r';
    case 't':
        return '\t';
    default:
        return '\0';
    }
}

} // namespace

/// Parses a string from its quote on. Returns false, after reporting the error, when it is malformed.
bool JsonReader::read_string() {
    begin_ = at_++;
    std::size_t plain = at_; // beginning of the part not decoded yet
    decoded_.clear();
    is_of_source_ = true;
    for (;;) {
        if (is_at_end()) {
            fail("the string is not closed", begin_, at_ - begin_);
            return false;
        }
        const char character = peek();
        if (character == '"') {
            break;
        }
        if (character == '\\') {
            decoded_.append(source_, plain, at_ - plain);
            is_of_source_ = false;
            if (!read_escape()) {
                return false;
            }
            plain = at_;
            continue;
        }
        if (static_cast<unsigned char>(character) < 0x20) {
            fail(character == '\n' || character == '\r' ? "the string is not closed on its line"
                                                        : "a control character in a string has to be escaped",
                 at_, 1);
            return false;
        }
        const std::size_t length =
            static_cast<unsigned char>(character) < 0x80 ? 1 : bk::utf8_length(source_, at_);
        if (length == 0) {
            fail("a byte that is not UTF-8", at_, 1);
            return false;
        }
        at_ += length;
    }
    if (is_of_source_) {
        text_ = source_.substr(plain, at_ - plain);
    } else {
        decoded_.append(source_, plain, at_ - plain);
        text_ = decoded_;
    }
    ++at_;
    return true;
}

/// Decodes an escape from the backslash on.
bool JsonReader::read_escape() {
    const std::size_t begin = at_++;
    if (peek() != 'u') {
        const char character = is_at_end() ? '\0' : escaped(peek());
        if (character == '\0') {
            fail("JSON does not have this escape", begin, is_at_end() ? 1 : 2);
            return false;
        }
        decoded_ += character;
        ++at_;
        return true;
    }
    unsigned int code = 0;
    if (!read_code_unit(code)) {
        fail("four hexadecimal digits must follow \\u", begin, 2);
        return false;
    }
    if (code < first_surrogate || code > last_surrogate) {
        append_character(code);
        return true;
    }
    unsigned int low = 0;
    if (code >= first_low_surrogate || peek() != '\\' || !(++at_, read_code_unit(low)) ||
        low < first_low_surrogate || low > last_surrogate) {
        fail("half of a surrogate pair is not a character", begin, 6);
        return false;
    }
    append_character(0x10000 + ((code - first_surrogate) << 10) + (low - first_low_surrogate));
    return true;
}

/// Decodes a \u escape from the u on.
bool JsonReader::read_code_unit(unsigned int& unit) {
    if (peek() != 'u' || source_.size() - at_ < 5) {
        return false;
    }
    unit = 0;
    for (std::size_t i = 1; i <= 4; ++i) {
        const int digit = hexadecimal_digit(source_[at_ + i]);
        if (digit < 0) {
            return false;
        }
        unit = unit << 4 | static_cast<unsigned int>(digit);
    }
    at_ += 5;
    return true;
}

void JsonReader::append_character(unsigned int code) {
    const auto put = [this](unsigned int byte) { decoded_ += static_cast<char>(byte); };
    if (code < 0x80) {
        put(code);
    } else if (code < 0x800) {
        put(0xC0 | code >> 6);
        put(0x80 | (code & 0x3F));
    } else if (code < 0x10000) {
        put(0xE0 | code >> 12);
        put(0x80 | (code >> 6 & 0x3F));
        put(0x80 | (code & 0x3F));
    } else {
        put(0xF0 | code >> 18);
        put(0x80 | (code >> 12 & 0x3F));
        put(0x80 | (code >> 6 & 0x3F));
        put(0x80 | (code & 0x3F));
    }
}

} // namespace bk_parser
