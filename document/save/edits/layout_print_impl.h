#pragma once

#include "parser/parser_entry.h"

#include <string>
#include <string_view>

namespace bk_parser {

/// How new text is laid out where it is put.
struct PrintLayout {
    std::string indent; // of the line
    std::string unit;   // of one level inside
    std::string_view line_break = "\n";
    bool has_escapes = true;
};

/// Each is empty when it would be longer than a text can be.
std::string print_lines(const ParserEntry& entry,
                        const PrintLayout& layout); // without first indentation and last line end
std::string print_in_line(const ParserEntry& entry, bool has_escapes);
std::string print_head(const ParserEntry& entry);
/// One value, a group with its braces.
std::string print_value(const ParserValue& value, const PrintLayout& layout);

} // namespace bk_parser
