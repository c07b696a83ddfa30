#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// Finds the lines of a file around a place. A line ends with its line feed; a carriage return before it counts as a blank.
namespace bk_parser {

std::size_t line_begin(std::string_view text, std::size_t at) noexcept;
/// The position after the line's line feed, or the end of the text.
std::size_t next_line(std::string_view text, std::size_t at) noexcept;
/// The position after the last character before `at` on the line that is not a blank.
std::size_t trimmed_back(std::string_view text, std::size_t at) noexcept;
/// The place of the next character that is not a blank, or the line's end.
std::size_t skip_blanks(std::string_view text, std::size_t at) noexcept;

/// Whether only blanks are before the place on its line.
bool begins_line(std::string_view text, std::size_t at) noexcept;
/// Whether only blanks and perhaps a comment follow on the line.
bool ends_line(std::string_view text, std::size_t at) noexcept;
/// Whether a blank line, with its line feed, begins at the place.
bool is_at_blank_line(std::string_view text, std::size_t at) noexcept;
/// Whether a blank line ends at the place.
bool is_behind_blank_line(std::string_view text, std::size_t at) noexcept;

/// Returns the indentation of the line that has this place.
std::string_view indent_of(std::string_view text, std::size_t at) noexcept;
/// The beginning of the comments directly above an entry's line that have its indentation; the line itself when there are none.
std::size_t comments_above(std::string_view text, std::size_t at) noexcept;
/// One level of indentation: that of the first indented line, or four blanks when no line is indented.
std::string indent_unit(std::string_view text);
/// The line end, "\n" or "\r\n", of this line, or of the first line where this one has none.
std::string_view line_break(std::string_view text, std::size_t at) noexcept;

/// The range to remove together with the bytes from `begin` to `end`: the whole line when only a comment would stay on it, else
/// the blanks before or after.
struct LineRange {
    std::size_t begin = 0;
    std::size_t end = 0;
    bool has_whole_lines = false;
};
LineRange removal_of(std::string_view text, std::size_t begin, std::size_t end) noexcept;

/// Moves lines from the indentation `from` to `to`. The first line comes without its indentation and gets `to`. In each other line `to`
/// takes the place of `from`; a line that does not begin with `from` stays.
std::string indented_anew(std::string_view lines, std::string_view from, std::string_view to);

} // namespace bk_parser
