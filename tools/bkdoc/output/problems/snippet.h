#pragma once

#include "document/problem.h"
#include "output/output.h"

namespace bkdoc {

/// Writes the source line of a problem, and "^~~~" below the place. Keeps tabs, so that both lines align. Of a long line, shows
/// the part around the place.
void write_snippet(const bk_parser::Problem& problem, Output& out);

} // namespace bkdoc
