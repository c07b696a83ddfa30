#pragma once

#include "core/core_export.h"

#include <cstddef>
#include <string_view>

namespace bk_parser {

/// The length of the well-formed UTF-8 character (RFC 3629) at `position`, which must be inside the text. 0 when no such character
/// begins there.
BK_PARSER_API std::size_t utf8_length(std::string_view text, std::size_t position) noexcept;

/// The number of characters, as columns of problems count them: each well-formed character is one, and so is each byte that
/// belongs to none.
BK_PARSER_API std::size_t count_characters(std::string_view text) noexcept;

} // namespace bk_parser
