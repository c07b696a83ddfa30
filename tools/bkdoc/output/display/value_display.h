#pragma once

#include "output/output.h"
#include "parser/parser_entry.h"

#include <string>

/// Names, types and values as people read them.
namespace bkdoc {

/// "camera", "camera<perspective>", "position[3]", "list[]".
std::string shown_name(const ParserEntry& entry);

/// "int", "string", ...
std::string_view type_word(ParserValue::Type type);

/// "int", "3 doubles", "string, 2 ints": the types of the values that are no groups; empty when there are
/// none.
std::string shown_types(const ParserEntry& entry);

/// What the entry is beside its name: "keyword", "call", "template", "array", or nothing.
std::string shown_kind(const ParserEntry& entry);

/// The value on one line, not longer than a line: of a longer one the beginning and the full length. Of a
/// group, how many entries it has.
std::string shown_value(const ParserEntry& entry, unsigned int i);

/// The tone that shows a value of this type.
Tone tone_of(ParserValue::Type type);

} // namespace bkdoc
