#pragma once

#include "document/problem.h"

namespace bkdoc {

/// The column of a problem on a screen, from 1, as compilers tell it: a tab goes on to the next multiple of eight, East Asian
/// characters are two columns wide, and marks that combine none. Of what lies before the part of the line that the problem
/// knows each character is one column. 0 where there is no place.
unsigned int screen_column(const bk_parser::Problem& problem) noexcept;

} // namespace bkdoc
