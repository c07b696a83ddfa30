#pragma once

#include "core/core_export.h"

#include <string>
#include <string_view>

namespace bk_parser {

/// The difference of two texts by lines, as `diff -u` writes it: two lines of names, then each difference with three lines around
/// it. Empty when the texts are equal. Writes the names as they are. Takes time in proportion to the lines. A stretch in which no
/// line is unique takes time in proportion to its lines times its differences. When it has too many differences, it is shown as replaced.
[[nodiscard]] BK_PARSER_API std::string unified_diff(std::string_view before, std::string_view after,
                                                     std::string_view before_name,
                                                     std::string_view after_name);

} // namespace bk_parser
