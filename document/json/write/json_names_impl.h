#pragma once

#include "parser/parser_group.h"

namespace bk_parser {

/// Whether no two entries of the group have one name, as far as that can be told in little memory: false, too, when the names of
/// two have one hash. Takes 8 bytes an entry, and of a group whose first entries share a name none.
bool has_distinct_names(const ParserGroup& group);

} // namespace bk_parser
