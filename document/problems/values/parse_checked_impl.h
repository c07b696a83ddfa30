#pragma once

#include "document/load/meter_impl.h"
#include "document/problems/list/problem_list_impl.h"
#include "document/sources/source_map_impl.h"
#include "parser/parser_group.h"
#include "parser/parser_limits.h"

#include <string>
#include <string_view>
#include <vector>

namespace bk_parser {

/// Where a check reports its progress. The parse reports to the meter's current range, in bytes of the text. The analysis of the faults
/// then reports to `of_faults`.
struct CheckProgress {
    Meter& meter;
    Meter::Range of_faults;
};

/// Parses an expanded text, which a NUL must follow, into a group. Turns faults into problems and logs nothing. Returns the words that
/// were not read, as `unread_words` does.
std::vector<std::string> parse_checked(ParserGroup& root, std::string_view expanded, bool has_escapes,
                                       const SourceMap& sources, const ParserLimits& limits,
                                       ProblemList& problems, const CheckProgress& progress);

} // namespace bk_parser
