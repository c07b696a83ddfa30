#pragma once

#include "document/problems/list/losses_impl.h"
#include "document/problems/list/problem_list_impl.h"

namespace bk_parser {

/// Finds mistakes in files that do not depend on the grammar: bytes that no text should have, version lines, and directives inside
/// strings. Reads each file once; linear in its size.
void check_sources(const SourceMap& sources, bool has_escapes, const Losses& losses, ProblemList& problems);

} // namespace bk_parser
