#pragma once

#include "input/source_map.h"
#include "output/output.h"

namespace bkdoc {

/// Writes the line that a spot of a file begins in, and a line with "^~~~" under the spot. Tabs stay, so
/// that both lines align. Of a long line, the part around the spot is shown.
void write_snippet(const SourceText& source, const Spot& spot, Output& out);

} // namespace bkdoc
