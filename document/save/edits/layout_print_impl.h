#pragma once

#include "parser/parser_entry.h"

#include <string>
#include <string_view>

namespace bk_parser {

/// The layout of new text at its place.
struct PrintLayout {
    std::string indent; // of the first line
    std::string unit;   // for each level below
    std::string_view line_break = "\n";
    bool has_escapes = true;
};

/// These return an empty text when it would be longer than a text can be.
std::string print_lines(const ParserEntry& entry,
                        const PrintLayout& layout); // without the first indentation and the last line end
std::string print_in_line(const ParserEntry& entry, bool has_escapes);
std::string print_head(const ParserEntry& entry);
/// Prints one value; a group with its braces.
std::string print_value(const bk::StoredValue& value, const PrintLayout& layout);

/// Whether the value is a string with a quote, or a group that holds one.
bool has_quote(const bk::StoredValue& value);
/// Whether a value of the entry is or holds one.
bool has_quote(const ParserEntry& entry);

} // namespace bk_parser
