#pragma once

#include "parser/parser_group.h"

namespace bk_parser {

/// Whether all names of the group surely differ. Compares hashes, so a collision also gives false. Takes 8 bytes per entry, or
/// nothing for a group whose first entries share a name.
bool has_distinct_names(const ParserGroup& group);

} // namespace bk_parser
