#pragma once

#include "core/core_string.h"
#include "parser/parser_entry.h"
#include "parser/parser_group.h"
#include "parser/parser_value.h"
#include "parser/parser_word.h"

#include <string>
#include <string_view>

/// Converts the library's strings to those of the standard library, which a failed assertion prints readably.
inline std::string plain(const CoreBasicString& text) {
    return std::string(text.get_view());
}

/// Converts a text to the library's string, NUL bytes included.
inline CoreString core(std::string_view text) {
    return CoreString(text);
}

/// The text of a value on one line.
inline std::string written(const ParserValue& value) {
    CoreString out;
    value.get_text(out, false, 1);
    return plain(out);
}

/// The text of a group on one line, with its name and braces.
inline std::string written(const ParserGroup& group) {
    CoreString out;
    group.get_text(out, true, false, 1);
    return plain(out);
}

/// The text of an entry on one line.
inline std::string written(const ParserEntry& entry) {
    CoreString out;
    entry.get_text(out, false, 1);
    return plain(out);
}

/// A word that owns its text.
class OwnedWord {
public:
    explicit OwnedWord(std::string_view text, double version = 1.2)
        : text_(text), word_(text_, true, CoreVersion(version)) {}
    OwnedWord(const OwnedWord&) = delete;
    OwnedWord& operator=(const OwnedWord&) = delete;

    ParserWord* operator->() { return &word_; }
    ParserWord& operator*() { return word_; }

private:
    CoreString text_;
    ParserWord word_;
};
