#pragma once

#include "document/paths/path_steps_impl.h"

#include <span>

namespace bk_parser {

/// Whether an entry fits the name, template and selectors of a step. `counters`, one for each index of the step, number
/// the entries of one group: every entry of the group is to be asked about, in order.
bool fits_step(const PathStep& step, const ParserEntry& entry, std::span<unsigned int> counters);

} // namespace bk_parser
