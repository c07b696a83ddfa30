#pragma once

#include "document/problem.h"
#include "output/output.h"

namespace bkdoc {

/// Writes the source line of a problem, and a line with "^~~~" under the place. Tabs stay, so that both lines align. Of a
/// long line, the part around the place is shown.
void write_snippet(const bk_parser::Problem& problem, Output& out);

} // namespace bkdoc
