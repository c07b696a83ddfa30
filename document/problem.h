#pragma once

#include "core/core_export.h"

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

namespace bk_parser {

/// How bad a problem is.
enum class Severity {
    warning, ///< the document was read as it is spelled, but its author probably meant something else
    error    ///< something was lost: a word, an entry, a file, or the whole document
};

/// Something that is wrong with a document, or looks wrong, and where.
struct Problem {
    /// Whether something was lost.
    Severity severity = Severity::error;
    /// Stable across versions, such as "comment-joins-line". docs/problems.md has a section for each code of a load, and
    /// docs/formats.md a table of the codes of losses.
    std::string code;
    /// What was found and what to do, on one line, without the place. Control characters and bytes that are not UTF-8 (file names may
    /// have some) are spelled as in "\x1B".
    std::string message;
    /// The file that holds the place, as it was given or found: relative when the given path is; empty for a document in memory.
    std::filesystem::path file;
    /// Counted from 1; 0 when the problem has no place.
    unsigned int line = 0;
    /// Counted from 1, in UTF-8 characters; a byte that belongs to no character counts as one. 0 when the problem has no place.
    unsigned int column = 0;
    /// Where the place begins, in bytes of that file after decryption.
    std::size_t offset = 0;
    /// How many bytes the place takes.
    std::size_t length = 0;
    /// The line with the place, without its line end, as the file has it: it may have tabs, control characters and
    /// bytes that are not UTF-8. A line of more than 4096 bytes is shortened to a part around the place, which cuts no character in two.
    /// Empty once the lines of earlier problems take 64 MB.
    std::string source_line;
    /// Where source_line begins, in bytes of the file.
    std::size_t source_line_offset = 0;
    /// The files that led to `file`, the innermost first: each includes the one before it.
    std::vector<std::filesystem::path> included_from;
};

} // namespace bk_parser
