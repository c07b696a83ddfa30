#pragma once

#include "types/handles.h"

namespace bk_python {

/// Whether two groups, or two entries, have the same content: names, kinds, templates, array counts, and values with their
/// types. Numbers are compared by value, not by spelling. Linear up to the first difference.
bool are_equal(const ParserGroup& left, const ParserGroup& right);
bool are_equal(const ParserEntry& left, const ParserEntry& right);

} // namespace bk_python
