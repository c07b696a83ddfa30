#pragma once

#include "parser/parser_value.h"
#include "parser/parser_word.h"

#include <string_view>

namespace bk_parser {

/// Whether a word of this kind parses to exactly this value: the same type and content and, for numbers and bools that were
/// read from text, the same spelling.
bool reads_as(ParserWord::Type kind, std::string_view word, const bk::StoredValue& value, bool has_escapes);

} // namespace bk_parser
