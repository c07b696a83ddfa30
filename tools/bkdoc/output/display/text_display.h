#pragma once

#include "document/utf8.h"

#include <cstddef>
#include <string>
#include <string_view>

/// Texts of documents as they may be shown: nothing in them can move the cursor or break a line, and a long
/// one is cut.
namespace bkdoc {

using bk_parser::count_characters;
using bk_parser::utf8_length;

/// The first byte at or after `position` that begins a character, when the text is well-formed there.
std::size_t character_start(std::string_view text, std::size_t position) noexcept;

/// Whether the character may be shown as it is: well-formed, visible or a blank, and without power over its
/// neighbours.
bool is_showable(std::string_view character) noexcept;

/// Stands for what is left out.
inline constexpr std::string_view ellipsis = "\xE2\x80\xA6";

/// What is nested deeper says its depth instead of being indented.
inline constexpr std::size_t indented_levels = 24;

inline constexpr char hexadecimal_digits[] = "0123456789ABCDEF";

/// How many characters of a file's name are shown.
inline constexpr std::size_t file_name_limit = 300;

/// The text on one line, control characters and stray bytes as escapes, cut with an ellipsis after `limit`
/// characters.
std::string shown(std::string_view text, std::size_t limit);

/// The text as a string of the document syntax, in quotes, cut in the same way.
std::string shown_quoted(std::string_view text, std::size_t limit);

/// "1,234,567".
std::string grouped(unsigned long long number);

/// "1 entry", "12 entries".
std::string counted(unsigned long long number, std::string_view one, std::string_view many);

} // namespace bkdoc
