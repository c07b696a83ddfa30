#pragma once

#include "document/problems/list/losses_impl.h"
#include "document/problems/list/problem_list_impl.h"

namespace bk_parser {

/// What is wrong with the files of a reading whatever the grammar makes of them: bytes that belong in no text, version lines, and
/// directives inside strings. Each file is looked at once. Linear in the files.
void check_sources(const SourceMap& sources, bool has_escapes, const Losses& losses, ProblemList& problems);

} // namespace bk_parser
