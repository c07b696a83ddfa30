#pragma once

#include "output/output.h"
#include "parser/parser_entry.h"

#include <string>

/// Names, types and values in a form for people.
namespace bkdoc {

/// "camera", "camera<perspective>", "position[3]", "list[]".
std::string shown_name(const ParserEntry& entry);

/// "int", "string", ...
std::string_view type_word(ParserValue::Type type);

/// "int", "3 doubles", "string, 2 ints": the types of all values except groups; empty when there are none.
std::string shown_types(const ParserEntry& entry);

/// The kind of the entry: "keyword", "call", "template" or "array"; empty for an ordinary one.
std::string shown_kind(const ParserEntry& entry);

/// The value on one line. A long one is cut and followed by its full length. For a group, the number of its entries.
std::string shown_value(const ParserEntry& entry, unsigned int i);

/// The tone for values of this type.
Tone tone_of(ParserValue::Type type);

} // namespace bkdoc
