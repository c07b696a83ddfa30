#pragma once

#include "core/reports/app_progress_impl.h"
#include "parser/files/parser_document_impl.h"

#include <cstddef>
#include <string_view>

namespace bk {

/// A part of a source that is kept, and what ends it.
struct SourcePiece {
    enum class Then { end, comment, version, include, open_include, pause };

    std::string_view text;
    unsigned int offset = 0;
    Then then = Then::end;
    std::string_view argument; // of the directive: the number, or the name between the quotes
    unsigned int directive_offset = 0;
    unsigned int directive_length = 0;
};

/// Cuts a source at comments and directives. Skips a byte order mark at the very beginning, which offsets count. Finds comments only
/// outside strings, and directives inside strings as well. A quote at the very beginning of a source does not open a string.
class SourceScanner {
public:
    SourceScanner(std::string_view source, Progress progress) noexcept
        : source_(source), progress_(progress),
          begin_(source.starts_with(byte_order_mark) ? byte_order_mark.size() : 0) {}

    /// Keeps version lines as text too, except one at the very beginning.
    void keep_later_version_lines() noexcept { keeps_later_version_lines_ = true; }

    /// Ends pieces that are longer than this, with Then::pause.
    void set_longest_piece(std::size_t size) noexcept { longest_piece_ = size; }

    /// The last piece ends with Then::end. What the host's progress bar throws passes through and ends the scan.
    SourcePiece next();

private:
    bool take_special(SourcePiece& piece);
    bool take_directive(SourcePiece& piece) noexcept;
    void take_include(SourcePiece& piece) noexcept;
    void take_version(SourcePiece& piece) noexcept;
    void take_quote() noexcept;
    void copy_hexadecimal();
    std::size_t find_special(std::size_t from, std::size_t end) const noexcept;
    std::size_t after_line(std::size_t from) const noexcept;
    bool looking_at(std::string_view word) const noexcept {
        return source_.substr(position_).starts_with(word);
    }
    void step_to(std::size_t end);
    void finish_piece(SourcePiece& piece, SourcePiece::Then then, std::size_t resume_at) noexcept;

    std::string_view source_;
    Progress progress_;
    std::size_t begin_;
    std::size_t position_ = begin_;
    std::size_t piece_begin_ = 0;
    std::size_t longest_piece_ = std::string_view::npos;
    std::size_t line_end_ = 0; // the end of the version line that was found last
    bool in_string_ = false;
    bool keeps_later_version_lines_ = false;
    bool skips_directive_ = false; // the next piece begins with a version line that is kept
};

} // namespace bk
