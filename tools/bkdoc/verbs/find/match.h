#pragma once

#include "document/ranges.h"
#include "parser/parser_entry.h"

#include <string>

namespace bkdoc {

/// An entry that was found, or one value of it.
struct Match {
    const ParserEntry* entry = nullptr;
    unsigned int value = bk_parser::Visit::whole_entry;

    bool is_whole() const noexcept { return value == bk_parser::Visit::whole_entry; }
};

/// A value as the text syntax spells it, on one line; a very long one is cut. Of a group, how many entries it has.
std::string spelled_value(const ParserEntry& entry, unsigned int i);
/// The values of a match in that way, with blanks between them; a very long list is cut.
std::string spelled_values(const Match& match);

/// The values of a match and nothing else, whole: a single string as it is, everything else as the text syntax has it on one
/// line.
std::string plain_values(const Match& match);

/// A value as JSON: a number, a string, a boolean, {"entries": N} for a group, {"data": "hexadecimal"} for binary data.
std::string json_value(const ParserEntry& entry, unsigned int i);

} // namespace bkdoc
