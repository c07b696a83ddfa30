#pragma once

#include "parser/parser_group.h"

namespace bk_parser {

/// The first entry of `left` that differs from its counterpart in `right` by name, kind, template, array count, or the types
/// and contents of its values. Null when the trees are equal. Ignores spellings.
const ParserEntry* first_difference(const ParserGroup& left, const ParserGroup& right);

} // namespace bk_parser
