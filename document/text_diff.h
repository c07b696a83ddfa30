#pragma once

#include "core/core_export.h"

#include <string>
#include <string_view>

namespace bk_parser {

/// The difference of two texts by lines, as `diff -u` writes it: two lines of names, then the places with three lines around
/// each. Empty when the texts are equal. Names are written as they are. Takes time in proportion to the lines, and
/// in stretches without lines that are the only ones of their content to the lines times the differences; where
/// these are too many, a stretch is shown as replaced.
[[nodiscard]] BK_PARSER_API std::string unified_diff(std::string_view before, std::string_view after,
                                                     std::string_view before_name,
                                                     std::string_view after_name);

} // namespace bk_parser
