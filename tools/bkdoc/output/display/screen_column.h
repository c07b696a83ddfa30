#pragma once

#include "document/problem.h"

namespace bkdoc {

/// The column of a problem on a screen, from 1, as compilers count it. A tab goes to the next multiple of eight. East Asian
/// characters take two columns, combining marks none. Of a long line only a part is known; each character before that part counts
/// as one column. Returns 0 when the problem has no place.
unsigned int screen_column(const bk_parser::Problem& problem) noexcept;

} // namespace bkdoc
