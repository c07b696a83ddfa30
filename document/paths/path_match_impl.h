#pragma once

#include "document/paths/path_steps_impl.h"

#include <span>

namespace bk_parser {

/// Whether an entry fits the name, template and selectors of a step. `counters` has one counter for each index of the step, which
/// number the entries of one group. So call this for every entry of the group, in order.
bool fits_step(const PathStep& step, const ParserEntry& entry, std::span<unsigned int> counters);

} // namespace bk_parser
