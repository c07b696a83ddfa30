#pragma once

#include "document/utf8.h"

#include <cstddef>
#include <string>
#include <string_view>

/// Makes texts of documents safe to show: they cannot move the cursor or break a line, and long ones are cut.
namespace bkdoc {

using bk_parser::count_characters;
using bk_parser::utf8_length;

/// The first byte at or after `position` that begins a character, in well-formed text.
std::size_t character_start(std::string_view text, std::size_t position) noexcept;

/// Whether to show the character as it is: it is well-formed, visible or a blank, and does not change how its neighbours look.
bool is_showable(std::string_view character) noexcept;

/// Marks the place where text was left out.
inline constexpr std::string_view ellipsis = "\xE2\x80\xA6";

/// Deeper levels state their depth instead of being indented.
inline constexpr std::size_t indented_levels = 24;

inline constexpr char hexadecimal_digits[] = "0123456789ABCDEF";

/// How many characters of a file name are shown.
inline constexpr std::size_t file_name_limit = 300;

/// The text on one line: control characters and stray bytes as escapes, and an ellipsis after `limit` characters.
std::string shown(std::string_view text, std::size_t limit);

/// The text as a quoted string of the document syntax, cut in the same way.
std::string shown_quoted(std::string_view text, std::size_t limit);

/// "1,234,567".
std::string grouped(unsigned long long number);

/// "1 entry", "12 entries".
std::string counted(unsigned long long number, std::string_view one, std::string_view many);

} // namespace bkdoc
