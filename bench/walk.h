#pragma once

#include "parser/parser_group.h"

namespace bench {

/// Reads every value in its own type, and gives a sum that depends on all of them.
double walk(const ParserGroup& root);

} // namespace bench
