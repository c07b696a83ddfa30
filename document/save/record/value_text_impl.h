#pragma once

#include "parser/parser_value.h"
#include "parser/parser_word.h"

#include <string_view>

namespace bk_parser {

/// Whether a word of a text, which the grammar takes for this kind of value, reads as just this value: of one type, of one content,
/// and for numbers and bools that were read from text of one spelling.
bool reads_as(ParserWord::Type kind, std::string_view word, const ParserValue& value, bool has_escapes);

} // namespace bk_parser
