#pragma once

#include "core/core_string.h"
#include "parser/parser_word.h"
#include "parser/words/parser_characters_impl.h"

#include <cstddef>
#include <string_view>

/// What a run of characters is in the text syntax. These rules serve ParserWord, the names of entries and
/// the grammar alike.
namespace bk {

inline constexpr unsigned int no_array = 0xFFFFFFFFu;

/// A name, and its template and array count. The template is itself a name, and may have suffixes of its own.
struct NameParts {
    std::string_view
        base; // without template and array suffix; keeps a bad suffix, but not a template that is no name
    unsigned int array_count = no_array;
    bool has_template = false;
    std::string_view template_word; // between "<" and ">"
};

enum class NameKind {
    none, // not a name, and nothing else is known of the word
    identifier,
    invalid // begins as a name and has a bad suffix; it is of no other kind either
};

/// Whether the word is an identifier. Does not check its template.
NameKind classify_name_level(std::string_view word, NameParts& parts) noexcept;

/// Whether the word is an identifier, its template and the templates inside that included. Fills in the parts
/// of the name and of its template. Linear in the word; nested templates cost no stack.
NameKind classify_name(std::string_view word, NameParts& name, NameParts& template_name) noexcept;

/// Whether an entry may have this name, and of which type it then is.
bool is_entry_name(std::string_view name, bool& is_keyword) noexcept;

bool is_keyword_word(std::string_view word) noexcept;
inline bool is_bool_word(std::string_view word) noexcept {
    return word == "yes" || word == "no";
}
bool is_int_word(std::string_view word) noexcept;
bool is_double_word(std::string_view word) noexcept;
bool is_binary_data_word(std::string_view word) noexcept;
bool is_string_word(std::string_view word) noexcept;
/// Whether the base of a name with a suffix is also a name without the suffix.
inline bool is_name_by_itself(std::string_view base) noexcept {
    return base.back() != '.' && !is_bool_word(base);
}
inline constexpr std::string_view empty_tag = "<empty>";

/// The word as it is in the text, with its escapes.
inline std::string_view characters_of(const ParserWord& word) noexcept {
    return word.is_empty() ? std::string_view() : std::string_view(&word[0], word.get_length());
}

/// The first kind of value that fits, TYPE_UNKNOWN when none does.
ParserWord::Type classify_value(std::string_view word) noexcept;

/// Whether a digit before this character may begin a hexadecimal number.
inline bool is_hexadecimal_mark(char character) noexcept {
    return (character | 0x20) == 'x';
}

/// Classifies a word that begins with a digit, or with "-" and a digit, and has no hexadecimal mark after that digit.
/// `classes` has all classes of its characters. Such a word converts both as an int and as a double, whatever follows, so only
/// '.' and 'e' decide.
inline ParserWord::Type classify_decimal(unsigned int classes) noexcept {
    return (classes & CHAR_DOUBLE_MARK) != 0 ? ParserWord::TYPE_DOUBLE : ParserWord::TYPE_INT;
}

/// Classifies such a word whether a mark follows the digit or not. The character after the word must be readable; it may be a NUL.
inline ParserWord::Type classify_number(std::string_view word, unsigned int classes) noexcept {
    const char* const digit = word.data() + (word[0] == '-' ? 1 : 0);
    return is_hexadecimal_mark(digit[1]) ? classify_value(word) : classify_decimal(classes);
}

/// Whether a word of this kind is a value.
inline bool is_value_kind(ParserWord::Type kind) noexcept {
    switch (kind) {
    case ParserWord::TYPE_BOOL:
    case ParserWord::TYPE_BINARY_DATA:
    case ParserWord::TYPE_INT:
    case ParserWord::TYPE_DOUBLE:
    case ParserWord::TYPE_STRING:
    case ParserWord::TYPE_EMPTY_TAG:
        return true;
    default:
        return false;
    }
}

/// The type of value that a word of a value kind makes.
inline ParserValue::Type value_type_of(ParserWord::Type kind) noexcept {
    switch (kind) {
    case ParserWord::TYPE_BINARY_DATA:
        return ParserValue::TYPE_BINARY_DATA;
    case ParserWord::TYPE_BOOL:
        return ParserValue::TYPE_BOOL;
    case ParserWord::TYPE_INT:
        return ParserValue::TYPE_INT;
    case ParserWord::TYPE_DOUBLE:
        return ParserValue::TYPE_DOUBLE;
    case ParserWord::TYPE_STRING:
        return ParserValue::TYPE_STRING;
    default:
        return ParserValue::TYPE_WORD;
    }
}

/// Whether strings of this serial version have escapes.
bool has_escapes(const CoreVersion& version) noexcept;

/// Resolves the escapes of `text` into `out`, which has room for as many characters, and returns the length.
/// A backslash at the very end is dropped.
std::size_t decode_escapes(std::string_view text, char* out) noexcept;
/// Returns `text` with its escapes resolved. It is a part of a document, and no longer than a string may be.
CoreString decoded(std::string_view text);

} // namespace bk
