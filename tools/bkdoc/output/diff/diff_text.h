#pragma once

#include "output/output.h"

#include <string_view>

namespace bkdoc {

/// Writes a unified diff, on a terminal with removed lines in red and added ones in green.
void write_diff(std::string_view diff, Output& out);

} // namespace bkdoc
