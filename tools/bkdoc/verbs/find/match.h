#pragma once

#include "document/ranges.h"
#include "parser/parser_entry.h"

#include <string>

namespace bkdoc {

/// A found entry, or one value of it.
struct Match {
    const ParserEntry* entry = nullptr;
    unsigned int value = bk_parser::Visit::whole_entry;

    bool is_whole() const noexcept { return value == bk_parser::Visit::whole_entry; }
};

/// A value in the text syntax on one line; a very long one is cut. For a group, the number of its entries.
std::string spelled_value(const ParserEntry& entry, unsigned int i);
/// The values of a match in the same way, separated by blanks; a very long list is cut.
std::string spelled_values(const Match& match);

/// Only the values of a match, never cut: a single string without quotes, everything else in the text syntax on one line.
std::string plain_values(const Match& match);

/// A value as JSON: a number, a string, a boolean, {"entries": N} for a group, or {"data": "hexadecimal"} for binary data.
std::string json_value(const ParserEntry& entry, unsigned int i);

} // namespace bkdoc
