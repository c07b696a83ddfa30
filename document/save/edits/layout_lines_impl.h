#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// The lines of a file around a place. A line ends with its line feed; a carriage return before that is a blank.
namespace bk_parser {

std::size_t line_begin(std::string_view text, std::size_t at) noexcept;
/// Behind the line feed of the line, or the end of the text.
std::size_t next_line(std::string_view text, std::size_t at) noexcept;
/// Behind the last character before `at` that is no blank, on the same line.
std::size_t trimmed_back(std::string_view text, std::size_t at) noexcept;
/// At the next character that is no blank, or at the line's end.
std::size_t skip_blanks(std::string_view text, std::size_t at) noexcept;

/// Whether nothing but blanks stands before the place on its line.
bool begins_line(std::string_view text, std::size_t at) noexcept;
/// Whether nothing but blanks, and perhaps a comment, stands behind it.
bool ends_line(std::string_view text, std::size_t at) noexcept;
/// Whether a line of blanks alone, with its line feed, begins at the place.
bool is_at_blank_line(std::string_view text, std::size_t at) noexcept;
/// Whether such a line ends at the place.
bool is_behind_blank_line(std::string_view text, std::size_t at) noexcept;

/// The blanks that the line begins with.
std::string_view indent_of(std::string_view text, std::size_t at) noexcept;
/// Where the comments begin that stand directly above the line of an entry, with its indentation; at the line when there are none.
std::size_t comments_above(std::string_view text, std::size_t at) noexcept;
/// What one level of indentation is: that of the first indented line, four blanks where there is none.
std::string indent_unit(std::string_view text);
/// The end of this line, or of the first line where this one has none: "\n" or "\r\n".
std::string_view line_break(std::string_view text, std::size_t at) noexcept;

/// What is removed with the bytes from `begin` to `end`: the whole line when nothing stays on it but a comment, else the blanks
/// before or behind.
struct LineRange {
    std::size_t begin = 0;
    std::size_t end = 0;
    bool has_whole_lines = false;
};
LineRange removal_of(std::string_view text, std::size_t begin, std::size_t end) noexcept;

/// Lines of which each begins with `from`, or with less, made to begin with `to` instead; the first one has lost its indentation.
std::string indented_anew(std::string_view lines, std::string_view from, std::string_view to);

} // namespace bk_parser
