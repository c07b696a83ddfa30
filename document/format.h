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
    /// In characters: a list of values goes on in the next line before it passes this column. No word is
    /// cut, and the first value stays with its name.
    unsigned int width = 100;
};

/// A text that was laid out.
struct FormatResult {
    /// Empty when it could not be laid out.
    std::string text;
    /// Why it could not, in one line; else empty.
    std::string reason;
    /// The faults that are the reason, with their places.
    std::vector<Problem> problems;
    /// Whether there is no reason against it.
    bool ok() const { return reason.empty(); }
};

/// Lays out the text of one file: an entry a line, indented by its groups; what a group holds between its braces on
/// lines of their own; lists that are too long for the width go on in the next line, one level deeper. Words stay as they
/// are spelled, and so do "=" and ",". Comments stay with what they stand behind, or above; an include directive stays
/// on a line of its own or within its line, a version line is a line of its own. Of blank lines between two things one is
/// kept, those at the begin and end of a group are not. A byte order mark stays, and lines end as the first one does (LF or
/// CR LF). What is laid out already comes back byte for byte.
///
/// Never changes what is read: the text is read again, and its words, comments, directives and tree are compared with those
/// of the text that was given. A text with errors is refused, and one in which a comment or a directive cuts a word.
/// Included files are neither read nor looked for. Linear in the text.
[[nodiscard]] BK_PARSER_API FormatResult format_text(std::string_view text,
                                                     const FormatOptions& options = {});

} // namespace bk_parser
