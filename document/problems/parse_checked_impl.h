#pragma once

#include "document/load/meter_impl.h"
#include "document/problems/problem_list_impl.h"
#include "document/sources/source_map_impl.h"
#include "parser/parser_group.h"
#include "parser/parser_limits.h"

#include <string_view>

namespace bk_parser {

/// Parses an expanded text, which a NUL follows, into a group. Faults become problems, and nothing is logged. The meter's
/// range is the parsing, in bytes of the text.
void parse_checked(ParserGroup& root, std::string_view expanded, bool has_escapes, const SourceMap& sources,
                   const ParserLimits& limits, ProblemList& problems, Meter& meter);

} // namespace bk_parser
