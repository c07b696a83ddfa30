#pragma once

#include "core/core_export.h"
#include "document/problem.h"

#include <string>
#include <string_view>
#include <vector>

namespace bk_parser {

/// How a text is to be laid out.
struct FormatOptions {
    /// Blanks for each group that a line is in.
    unsigned int indent = 4;
    /// In characters: a list of values that would be wider than this goes on in the next line. No word is cut, and the first value
    /// stays with its name.
    unsigned int width = 100;
};

/// A text that was laid out.
struct FormatResult {
    /// The new text; empty when it could not be laid out.
    std::string text;
    /// Why it could not be laid out, in one line; otherwise empty.
    std::string reason;
    /// The errors that are the reason, with their places.
    std::vector<Problem> problems;
    /// Whether the text was laid out.
    bool ok() const { return reason.empty(); }
};

/// Lays out the text of one file:
/// - Each entry is on a line of its own, indented once for each group that it is in, at most 100 times. The entries of a group are on
///   lines between its braces.
/// - A list that is too long for the width goes on in the next line, one level deeper.
/// - Words keep their spelling, and "=" and "," stay.
/// - A comment stays after or above what it describes. An include directive stays on a line of its own or within its line. A version
///   line is a line of its own.
/// - Of several blank lines in a row, one is kept. At the beginning and end of a group none is kept.
/// - A byte order mark stays. All lines end as the first one does (LF or CR LF).
///
/// The content never changes: the function reads the new text again and compares its words, comments, directives and tree with those of
/// the given text. A second run changes no byte. Refuses a text with errors, and one in which a comment or a directive cuts a word. Does
/// not look for included files. Linear in the text.
[[nodiscard]] BK_PARSER_API FormatResult format_text(std::string_view text,
                                                     const FormatOptions& options = {});

} // namespace bk_parser
