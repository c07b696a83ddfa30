#pragma once

#include "core/core_export.h"
#include "core/core_string.h"
#include "core/core_version.h"
#include "parser/parser_value.h"

#include <memory>
#include <string_view>

namespace bk {
struct NameParts;
}

/// A token of the text syntax: a view of a run of characters with its place and, once a classifier (`is_...`) has recognised
/// it, its kind. The first classifier that recognises a word sets its kind. From then on every classifier
/// answers by that kind, until `clear` or `set_brace(false)`.
///
/// A classifier that fails leaves the word unclassified, with two exceptions. `is_operator`, `is_separator`, `is_bool`,
/// `is_empty_tag`, `is_double`, `is_keyword` and `is_identifier` ask for the decoded string, and decoding makes a
/// double-quoted word of version 1.1 or later TYPE_STRING. `is_keyword` and `is_identifier` of `yes` or `no` leave
/// TYPE_BOOL. `is_int`, `is_binary_data` and `is_string` read the characters as they are.
///
/// The caller keeps the text alive as long as the word. A word carries a template or an array suffix, not both.
class BK_PARSER_API ParserWord {
public:
    /// What kind of word it is.
    enum Type : unsigned int {
        TYPE_IDENTIFIER = 0,
        TYPE_OPERATOR = 1,
        TYPE_SEPARATOR = 2,
        TYPE_KEYWORD = 3,
        TYPE_BOOL = 4,
        TYPE_BINARY_DATA = 5,
        TYPE_BRACE = 6,
        TYPE_INT = 7,
        TYPE_DOUBLE = 8,
        TYPE_STRING = 9,
        TYPE_EMPTY_TAG = 10,
        TYPE_INVALID = 11,
        TYPE_UNKNOWN = 12 ///< not classified yet
    };

    /// A word over the text: all of it when `whole`, else empty. Strings of versions before 1.1 have no escapes.
    ParserWord(const CoreString& text, const bool& whole, const CoreVersion& version);
    /// An empty word without a text.
    explicit ParserWord(const CoreVersion& version);
    ParserWord();
    /// The copy shares its source's template word, which dies with the last of them.
    ParserWord(const ParserWord& other);
    /// The template word is copied.
    ParserWord& operator=(const ParserWord& other);
    virtual ~ParserWord();

    /// Appends the character at `position` of the text to the word. The first one sets where the word starts.
    ParserWord& operator+=(unsigned int position);
    /// Becomes an empty word of no known kind.
    void clear();
    /// The `i`th character. Not checked.
    const char& operator[](const unsigned int& i) const { return text_[start_ + i]; }
    /// **Not a comparison of words**: compares `s` with the text from the word's start on, as far as `s` goes. The word's length does
    /// not matter: a word "abc" equals "ab", and a word "ab" followed by "c" equals "abc". An empty word equals
    /// only "", and "" equals every word.
    bool operator==(const char* s) const;

    /// The word's text, with quotes; from version 1.1 on with the escapes of a string resolved. It is a copy, made on the first call,
    /// also by a classifier. When memory runs out, throws std::bad_alloc and leaves the word as it was.
    const CoreString& get_string() const;

    /// The kind that a classifier found; TYPE_UNKNOWN before.
    const Type& get_type() const noexcept { return type_; }
    /// How many characters the word has.
    const unsigned int& get_length() const noexcept { return length_; }
    /// The line that set_line was given.
    const core_ulong& get_line() const noexcept { return line_; }
    /// The column that set_column was given.
    const core_ulong& get_column() const noexcept { return column_; }
    /// The declared size of an array; 0 for empty brackets; 0xFFFFFFFF when the word is not an array.
    const unsigned int& get_array_count() const noexcept { return array_count_; }
    /// The template word; null when there is none.
    ParserWord* get_template() const noexcept { return template_.get(); }
    /// Whether the word has a template word.
    bool has_template() const noexcept { return template_ != nullptr; }
    /// Whether it was declared as an array.
    bool is_array() const noexcept { return array_count_ != 0xFFFFFFFFu; }
    /// Whether the word has no character.
    bool is_empty() const noexcept { return length_ == 0; }

    /// Sets the line of the word. Does not check it.
    void set_line(const core_ulong& line) noexcept { line_ = line; }
    /// Sets the column of the word. Does not check it.
    void set_column(const core_ulong& column) noexcept { column_ = column; }
    /// TYPE_BRACE for true; for false the word is of no known kind.
    void set_brace(const bool& brace) noexcept { type_ = brace ? TYPE_BRACE : TYPE_UNKNOWN; }

    /// Whether the word is of the kind in the name. A word that was recognised as one kind is of no other kind.
    bool is_operator() const;
    /// Whether the word is of the kind in the name. A word that was recognised as one kind is of no other kind.
    bool is_separator() const;
    /// Whether the word is of the kind in the name. A word that was recognised as one kind is of no other kind.
    bool is_brace() const;
    /// Whether the word is of the kind in the name. A word that was recognised as one kind is of no other kind.
    bool is_bool() const;
    /// Whether the word is of the kind in the name. A word that was recognised as one kind is of no other kind.
    bool is_empty_tag() const;
    /// Whether the word is of the kind in the name. A word that was recognised as one kind is of no other kind.
    bool is_binary_data() const;
    /// Whether the word is of the kind in the name. A word that was recognised as one kind is of no other kind.
    bool is_string() const;
    /// Whether the word is of the kind in the name. A word that was recognised as one kind is of no other kind.
    bool is_int() const;
    /// Whether the word is of the kind in the name. A word that was recognised as one kind is of no other kind.
    bool is_double() const;
    /// Whether the word is of the kind in the name. A word that was recognised as one kind is of no other kind.
    bool is_keyword() const;
    /// Whether the word is a name. Removes a template or array suffix from the word. A bad suffix makes the word TYPE_INVALID.
    bool is_identifier() const;
    /// Whether the word is a value, and of which type.
    bool is_value(ParserValue::Type& type) const;

    /// Whether words of that kind are values; a brace is not.
    static bool is_value_type(const Type& type);

private:
    using StringRule = void (ParserWord::*)(CoreString&) const;

    void get_string_0100(CoreString& out) const;
    void get_string_0110(CoreString& out) const;
    std::string_view characters() const noexcept;
    bool classify(Type type, bool matches) const;
    bool is_text(std::string_view text) const;
    void copy_without_template(const ParserWord& other);
    void release_template() noexcept;
    void take_name(bk::NameParts parts) const;

    mutable Type type_ = TYPE_UNKNOWN;
    const char* text_ = nullptr;
    unsigned int start_ = 0;
    mutable unsigned int length_ = 0;
    core_ulong line_ = 0;
    core_ulong column_ = 0;
    mutable unsigned int array_count_ = 0xFFFFFFFFu;
    mutable std::shared_ptr<ParserWord> template_;
    mutable CoreString string_;
    mutable bool string_stale_ = true;
    StringRule string_rule_;
};
