#pragma once

#include "document/problem.h"

namespace bkdoc {

/// The column of a problem on a screen, from 1, as compilers count it: a tab goes to the next multiple of eight, East Asian
/// characters take two columns, and combining marks none. Characters before the known part of a long line count as one column
/// each. 0 without a place.
unsigned int screen_column(const bk_parser::Problem& problem) noexcept;

} // namespace bkdoc
