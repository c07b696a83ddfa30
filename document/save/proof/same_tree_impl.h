#pragma once

#include "parser/parser_group.h"

namespace bk_parser {

/// The first entry of `left` that `right` does not have just so: by name, kind, template, array count, and the types and contents of
/// its values. Null when the trees are equal. Spellings are not compared.
const ParserEntry* first_difference(const ParserGroup& left, const ParserGroup& right);

} // namespace bk_parser
