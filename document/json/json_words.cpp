#include "document/json/json_words_impl.h"

#include "core/text/core_utf8_impl.h"
#include "parser/words/parser_word_rules_impl.h"

#include <array>

namespace bk_parser {

namespace {

constexpr std::array<std::string_view, 4> kind_words = {"entry", "keyword", "call", "raw"};

bool is_digit_at(std::string_view text, std::size_t at) noexcept {
    return at < text.size() && text[at] >= '0' && text[at] <= '9';
}

std::size_t behind_digits(std::string_view text, std::size_t at) noexcept {
    while (is_digit_at(text, at)) {
        ++at;
    }
    return at;
}

/// The end of a fraction and an exponent; `at` when there are none.
std::size_t behind_fraction(std::string_view text, std::size_t at) noexcept {
    if (at < text.size() && text[at] == '.' && is_digit_at(text, at + 1)) {
        at = behind_digits(text, at + 1);
    }
    if (at < text.size() && (text[at] == 'e' || text[at] == 'E')) {
        const bool is_signed = at + 1 < text.size() && (text[at + 1] == '+' || text[at + 1] == '-');
        const std::size_t digits = at + (is_signed ? 2 : 1);
        at = is_digit_at(text, digits) ? behind_digits(text, digits) : at;
    }
    return at;
}

std::size_t behind_whole(std::string_view text) noexcept {
    const std::size_t first = text.starts_with('-') ? 1 : 0;
    if (!is_digit_at(text, first)) {
        return 0;
    }
    return text[first] == '0' ? first + 1 : behind_digits(text, first);
}

} // namespace

std::size_t json_number_length(std::string_view text) noexcept {
    const std::size_t whole = behind_whole(text);
    return whole == 0 ? 0 : behind_fraction(text, whole);
}

JsonNumber json_number_of(std::string_view word) noexcept {
    const std::size_t whole = behind_whole(word);
    if (whole == 0 || behind_fraction(word, whole) != word.size()) {
        return JsonNumber::none;
    }
    return whole == word.size() ? JsonNumber::whole : JsonNumber::broken;
}

ParserEntry::Type usual_kind(std::string_view name) noexcept {
    return bk::is_keyword_word(name) ? ParserEntry::TYPE_KEYWORD : ParserEntry::TYPE_ENTRY;
}

std::string_view kind_word(ParserEntry::Type kind) noexcept {
    return kind < kind_words.size() ? kind_words[kind] : std::string_view();
}

std::optional<ParserEntry::Type> kind_of_word(std::string_view word) noexcept {
    for (std::size_t i = 0; i < kind_words.size(); ++i) {
        if (kind_words[i] == word) {
            return static_cast<ParserEntry::Type>(i);
        }
    }
    return std::nullopt;
}

bool is_utf8(std::string_view text) noexcept {
    for (std::size_t i = 0; i < text.size();) {
        const std::size_t length = bk::utf8_length(text, i);
        if (length == 0) {
            return false;
        }
        i += length;
    }
    return true;
}

int hexadecimal_digit(char digit) noexcept {
    if (digit >= '0' && digit <= '9') {
        return digit - '0';
    }
    const char small = static_cast<char>(digit | 0x20);
    return small >= 'a' && small <= 'f' ? small - 'a' + 10 : -1;
}

bool resolve_byte_escapes(std::string_view text, std::string& out) {
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\\') {
            out += text[i];
            continue;
        }
        if (text.substr(i, 2) == "\\\\") {
            out += '\\';
            ++i;
            continue;
        }
        const bool has_digits = text.substr(i, 2) == "\\x" && text.size() - i >= 4;
        const int high = has_digits ? hexadecimal_digit(text[i + 2]) : -1;
        const int low = has_digits ? hexadecimal_digit(text[i + 3]) : -1;
        if (high < 0 || low < 0) {
            return false;
        }
        out += static_cast<char>(high * 16 + low);
        i += 3;
    }
    return true;
}

} // namespace bk_parser
