#pragma once

#include "parser/model/parser_value_impl.h"
#include "parser/parser_word.h"

#include <string_view>

namespace bk_parser {

/// Whether a word of this kind parses to exactly this value: the same type and content and, for numbers and bools that were
/// read from text, the same spelling.
bool reads_as(ParserWord::Type kind, std::string_view word, const ParserValue& value, bool has_escapes);

/// The same for the word of a number. Inline for the usual case, a number with its spelling.
inline bool reads_as_number(ParserWord::Type kind, std::string_view word, const ParserValue& value) {
    const ParserValue::Type type =
        kind == ParserWord::TYPE_INT ? ParserValue::TYPE_INT : ParserValue::TYPE_DOUBLE;
    if (bk::ValueAccess::type(value) == type && bk::ValueAccess::is_spelled(value)) {
        return bk::ValueAccess::spelling(value) == word;
    }
    return reads_as(kind, word, value, false);
}

} // namespace bk_parser
