#pragma once

#include "core/core_export.h"

#include <string_view>
#include <vector>

namespace bk_parser {

/// Every code that a problem may have, in the order of docs/problems.md.
[[nodiscard]] BK_PARSER_API std::vector<std::string_view> problem_codes_in_order();

} // namespace bk_parser
