#pragma once

#include "types/handles.h"

namespace bk_python {

/// Whether two groups, or two entries, hold the same: names, kinds, templates, array counts, and values with their types.
/// A number counts by its value, not by its spelling. Linear, up to the first difference.
bool are_equal(const ParserGroup& left, const ParserGroup& right);
bool are_equal(const ParserEntry& left, const ParserEntry& right);

} // namespace bk_python
