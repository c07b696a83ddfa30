#pragma once

#include "parser/parser_group.h"

namespace bench {

/// Reads every value in its own type, and returns a sum that depends on all values.
double walk(const ParserGroup& root);

} // namespace bench
