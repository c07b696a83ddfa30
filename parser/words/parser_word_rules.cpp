#include "core/numbers/core_number_impl.h"
#include "core/text/core_copy_impl.h"
#include "parser/words/parser_characters_impl.h"
#include "parser/words/parser_word_rules_impl.h"

#include <algorithm>

namespace bk {

namespace {

/// A number with one of these characters is a double, every other one an int. An upper-case 'E' is not among them.
bool has_double_mark(std::string_view word) noexcept {
    return std::any_of(word.begin(), word.end(), [](char c) { return is_char(c, CHAR_DOUBLE_MARK); });
}

/// `number` is what the word begins with.
bool is_int_word(std::string_view word, const IntText& number) noexcept {
    return number.length != 0 && !has_double_mark(word);
}

NameKind take_name(std::string_view word, std::size_t length, NameParts& parts) noexcept {
    parts.base = word.substr(0, length);
    return NameKind::identifier;
}

NameKind take_template(std::string_view word, std::size_t at, NameParts& parts) noexcept {
    if (word.size() - at <= 2 || word.back() != '>') {
        return NameKind::invalid;
    }
    parts.has_template = true;
    parts.template_word = word.substr(at + 1, word.size() - at - 2);
    return take_name(word, at, parts);
}

NameKind take_array_count(std::string_view word, std::size_t at, NameParts& parts) noexcept {
    const std::string_view count = word.substr(at + 1, word.size() - at - 2);
    const IntText number = text_to_int(count);
    if (!count.empty() && (!is_int_word(count, number) || number.value < 0)) {
        return NameKind::invalid;
    }
    parts.array_count = static_cast<unsigned int>(number.value);
    return take_name(word, at, parts);
}

char decoded_escape(char escaped) noexcept {
    switch (escaped) {
    case 'n':
        return '\n';
    case 'r':
        return '\r';
    case 't':
        return '\t';
    default:
        return escaped;
    }
}

} // namespace

NameKind classify_name_level(std::string_view word, NameParts& parts) noexcept {
    parts.base = word;
    if (word.empty() || !is_char(word[0], CHAR_NAME_START) || is_bool_word(word)) {
        return NameKind::none;
    }
    std::size_t i = 1;
    for (; i < word.size(); ++i) {
        const char character = word[i];
        if (is_char(character, CHAR_NAME) || (character == '.' && i + 1 < word.size())) {
            continue;
        }
        if (character == '<') {
            return take_template(word, i, parts);
        }
        if (character == '[' && word.back() == ']') {
            return take_array_count(word, i, parts);
        }
        return NameKind::none;
    }
    return take_name(word, i, parts);
}

NameKind classify_name(std::string_view word, NameParts& name, NameParts& template_name) noexcept {
    const NameKind kind = classify_name_level(word, name);
    if (kind != NameKind::identifier || !name.has_template) {
        return kind;
    }
    if (classify_name_level(name.template_word, template_name) != NameKind::identifier) {
        return NameKind::invalid;
    }
    // Deeper templates only have to be names: one that is not spoils the whole word.
    for (NameParts outer = template_name; outer.has_template;) {
        NameParts inner;
        if (classify_name_level(outer.template_word, inner) != NameKind::identifier) {
            return NameKind::invalid;
        }
        outer = inner;
    }
    return NameKind::identifier;
}

bool is_entry_name(std::string_view name, bool& is_keyword) noexcept {
    NameParts parts;
    NameParts template_parts;
    const NameKind kind = classify_name(name, parts, template_parts);
    is_keyword = kind == NameKind::none && is_keyword_word(name);
    return kind == NameKind::identifier || is_keyword;
}

bool is_keyword_word(std::string_view word) noexcept {
    if (word.size() < 2 || word[0] != '#' || !is_char(word[1], CHAR_NAME_START)) {
        return false;
    }
    for (const char character : word.substr(2)) {
        if (!is_char(character, CHAR_NAME)) {
            return false;
        }
    }
    return true;
}

bool is_int_word(std::string_view word) noexcept {
    return is_int_word(word, text_to_int(word));
}

bool is_double_word(std::string_view word) noexcept {
    return is_scanned_double(word);
}

bool is_binary_data_word(std::string_view word) noexcept {
    return word.size() > 2 && word[0] == '0' && word[1] == 'x';
}

bool is_string_word(std::string_view word) noexcept {
    return word.size() >= 2 && word.front() == '"' && word.back() == '"';
}

ParserWord::Type classify_value(std::string_view word) noexcept {
    if (word == empty_tag) {
        return ParserWord::TYPE_EMPTY_TAG;
    }
    if (is_binary_data_word(word)) {
        return ParserWord::TYPE_BINARY_DATA;
    }
    if (is_bool_word(word)) {
        return ParserWord::TYPE_BOOL;
    }
    if (is_int_word(word)) {
        return ParserWord::TYPE_INT;
    }
    if (is_double_word(word)) {
        return ParserWord::TYPE_DOUBLE;
    }
    return is_string_word(word) ? ParserWord::TYPE_STRING : ParserWord::TYPE_UNKNOWN;
}

bool has_escapes(const CoreVersion& version) noexcept {
    return !version.is_older_than(CoreVersion(1.1));
}

std::size_t decode_escapes(std::string_view text, char* out) noexcept {
    char* end = out;
    while (!text.empty()) {
        const std::size_t unescaped = std::min(text.find('\\'), text.size());
        copy_text(end, text.data(), unescaped);
        end += unescaped;
        if (unescaped + 1 < text.size()) {
            *end++ = decoded_escape(text[unescaped + 1]);
        }
        text.remove_prefix(std::min(unescaped + 2, text.size()));
    }
    return static_cast<std::size_t>(end - out);
}

CoreString decoded(std::string_view text) {
    CoreString out;
    const std::size_t length = decode_escapes(text, out.resize(static_cast<unsigned int>(text.size())));
    out.resize(static_cast<unsigned int>(length));
    return out;
}

} // namespace bk
