#include "document/paths/path_scanner_impl.h"

#include "core/numbers/core_number_text_impl.h"
#include "core/text/core_utf8_impl.h"
#include "parser/words/parser_characters_impl.h"

#include <algorithm>
#include <cstdint>

namespace bk_parser {

bool PathScanner::is_at_digit() const noexcept {
    return bk::is_char(peek(), bk::CHAR_DIGIT);
}

bool PathScanner::take(char character) noexcept {
    if (is_at_end() || text_[at_] != character) {
        return false;
    }
    ++at_;
    return true;
}

bool PathScanner::take(std::string_view characters) noexcept {
    if (!text_.substr(at_).starts_with(characters)) {
        return false;
    }
    at_ += characters.size();
    return true;
}

void PathScanner::skip_blanks() noexcept {
    while (!is_at_end() && bk::is_char(text_[at_], bk::CHAR_BLANK)) {
        ++at_;
    }
}

bool PathScanner::take_bare_name(std::string& name) {
    std::size_t end = at_ + (peek() == '#' ? 1 : 0);
    if (end == text_.size() || !bk::is_char(text_[end], bk::CHAR_NAME_START)) {
        return false;
    }
    while (end < text_.size() && (bk::is_char(text_[end], bk::CHAR_NAME) || text_[end] == '.')) {
        ++end;
    }
    name = text_.substr(at_, end - at_);
    at_ = end;
    return true;
}

bool PathScanner::take_string(std::string& text) {
    const std::size_t opening = at_++;
    while (!is_at_end()) {
        const char character = text_[at_++];
        if (character == '"') {
            return true;
        }
        if (character != '\\') {
            text += character;
        } else if (!take_escape(text)) {
            return false;
        }
    }
    return fail("the quote is not closed", opening);
}

bool PathScanner::take_escape(std::string& text) {
    const std::size_t backslash = at_ - 1;
    switch (const char escaped = peek(); escaped) {
    case '"':
    case '\\':
        text += escaped;
        break;
    case 'n':
        text += '\n';
        break;
    case 'r':
        text += '\r';
        break;
    case 't':
        text += '\t';
        break;
    case 'x': {
        bk::NumberScanner digits(text_.substr(std::min(at_ + 1, text_.size()), 2));
        const int high = digits.hex_digit();
        digits.advance();
        const int low = digits.hex_digit();
        if (high < 0 || low < 0) {
            return fail("two hexadecimal digits follow '\\x'", backslash);
        }
        text += static_cast<char>(high * 16 + low);
        at_ += 2;
        break;
    }
    default:
        return fail("unknown escape; there are \\\" \\\\ \\n \\r \\t and \\x with two digits", backslash);
    }
    ++at_;
    return true;
}

bool PathScanner::take_number(unsigned int& number, std::string_view meaning) {
    const std::size_t begin = at_;
    std::uint64_t value = 0;
    for (; is_at_digit(); ++at_) {
        value = std::min<std::uint64_t>(value * 10 + static_cast<std::uint64_t>(text_[at_] - '0'),
                                        std::uint64_t{0xFFFFFFFF});
    }
    if (at_ == begin) {
        return fail_at_character("this is the place for " + std::string(meaning));
    }
    if (value == 0xFFFFFFFFu) {
        return fail("no list is that long; this is the place for " + std::string(meaning), begin);
    }
    number = static_cast<unsigned int>(value);
    return true;
}

void PathScanner::take_digits() noexcept {
    while (is_at_digit()) {
        ++at_;
    }
}

std::string_view PathScanner::take_decimal() noexcept {
    const std::size_t begin = at_;
    if (!take('-')) {
        take('+');
    }
    const std::size_t digits = at_;
    take_digits();
    bool has_digits = at_ != digits;
    if (take('.')) {
        const std::size_t fraction = at_;
        take_digits();
        has_digits = has_digits || at_ != fraction;
    }
    if (!has_digits) {
        at_ = begin;
        return {};
    }
    const std::size_t mantissa_end = at_;
    if (take('e') || take('E')) {
        if (!take('-')) {
            take('+');
        }
        if (!is_at_digit()) {
            at_ = mantissa_end; // the error names the character there
        }
        take_digits();
    }
    return text_.substr(begin, at_ - begin);
}

bool PathScanner::fail(std::string message, std::size_t offset) {
    error_.message = std::move(message);
    error_.offset = offset;
    error_.length = std::max<std::size_t>(at_, offset + 1) - offset;
    return false;
}

bool PathScanner::fail_at_character(std::string_view advice) {
    if (is_at_end()) {
        return fail("the path ends too early; " + std::string(advice));
    }
    const std::size_t length = std::max<std::size_t>(bk::utf8_length(text_, at_), 1);
    const std::string_view found = text_.substr(at_, length);
    const bool is_shown = length > 1 || (found[0] > ' ' && found[0] < '\x7F');
    fail(is_shown
             ? "unexpected '" + std::string(found) + "'; " + std::string(advice)
             : "unexpected " + std::string(found == " " ? "blank" : "byte") + "; " + std::string(advice));
    error_.length = length;
    return false;
}

} // namespace bk_parser
