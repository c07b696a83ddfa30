#pragma once

#include "core/core_string.h"

#include <cstddef>
#include <string_view>
#include <utility>
#include <vector>

namespace bk_parser {

/// A place as an editor shows it, both counted from 1. A column is a character: a tab is one, and so is each
/// well-formed UTF-8 character and each byte that belongs to none. A byte order mark at the beginning of the file is none.
struct Place {
    std::size_t line = 1;
    std::size_t column = 1;
};

/// The text of a file, by lines. LF, CR LF and CR each end a line. A byte order mark at the beginning is in no line.
class SourceText {
public:
    SourceText() = default;
    explicit SourceText(CoreString&& text) noexcept : text_(std::move(text)) {}

    std::string_view get_text() const noexcept { return text_.get_view(); }
    /// Moves the text to the caller.
    CoreString take() noexcept { return std::move(text_); }
    std::size_t get_line_count() const;
    /// Logarithmic in the lines, and linear in the length of the line. Asking for places from left to right walks a line only once.
    Place place_of(std::size_t offset) const;
    /// Where the line of an offset begins and ends, its line end and the file's byte order mark left out.
    std::size_t line_begin(std::size_t offset) const;
    std::size_t line_end(std::size_t offset) const;

private:
    void find_lines() const;
    std::size_t line_index(std::size_t offset) const;

    CoreString text_;
    mutable std::vector<std::size_t> starts_; // of lines; found when first asked for
    // Where the last column was counted, from which the next one is counted on.
    mutable std::size_t counted_line_ = 0;
    mutable std::size_t counted_offset_ = 0;
    mutable std::size_t counted_column_ = 1;
};

} // namespace bk_parser
