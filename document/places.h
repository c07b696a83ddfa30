#pragma once

#include "core/core_export.h"
#include "document/load.h"
#include "parser/parser_entry.h"

#include <cstddef>
#include <filesystem>

namespace bk_parser {

/// Where the name of an entry is.
struct EntryPlace {
    /// The file that holds the entry, by the path by which it was found; empty for a document in memory.
    std::filesystem::path file;
    /// The absolute path of that file.
    std::filesystem::path path;
    /// Counted from 1; 0 when the place is not known.
    unsigned int line = 0;
    /// Counted from 1, in UTF-8 characters, as in a Problem; 0 when the place is not known.
    unsigned int column = 0;
    /// Where the name begins, in bytes of that file after decryption.
    std::size_t offset = 0;

    /// Whether the place is known.
    bool is_known() const noexcept { return line != 0; }
};

/// The place of an entry in the files of its document. **Do not call it from several threads at once**.
///
/// Load the document with `LoadOptions::keep_sources`; without it no place is known. An entry has no place either when it was read from
/// the binary form or an archive, when it was added after the load, and after a save of the document. Logarithmic in the lines of the
/// document, and linear in the length of the line.
[[nodiscard]] BK_PARSER_API EntryPlace place_of(const Document& document, const ParserEntry& entry);

} // namespace bk_parser
