#pragma once

#include "core/core_export.h"
#include "document/load.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace bk_parser {

/// Bytes of a stored form that could not be read.
struct LostPart {
    /// Where it begins, in bytes of the stored file. A part that was cut off begins at the end of the file.
    std::uint64_t offset = 0;
    /// How many bytes were lost. For a part that was cut off, the number that the file announces, or 0 when it announces none.
    std::uint64_t length = 0;
    /// What was there, as far as that is known: "values of 'lights/key/power'", "cut off". Names may have any bytes.
    std::string what;
};

/// The result of a recovery.
struct RecoverResult {
    /// The document, and its problems as after a load. One more problem, "damaged" or "cut-off", sums up the lost parts. Problems of
    /// an archive have their places in the text that its words make.
    LoadResult loaded;
    /// The lost parts by ascending place, at most 10,000. When there are more, the last one says how many.
    std::vector<LostPart> lost;

    /// Whether nothing is lost, and the document could be read.
    BK_PARSER_API bool is_whole() const;
};

/// **Look at the document before you use it**: a value that was read from a wrong place looks like any other.
///
/// Loads a binary, encrypted or archive file as `load` does, but goes on after damage wherever a size or the next entry shows where the
/// data continues.
///
/// When a size contradicts the part that it measures, the part counts. An entry keeps the values before the first one that was lost. A
/// file counts as a form when at most one of its first four bytes differs from those of that form. A text is loaded as by `load`, and has
/// no lost parts. Linear in the size of the file.
[[nodiscard]] BK_PARSER_API RecoverResult recover(const std::filesystem::path& path,
                                                  const LoadOptions& options = {});

/// Recovers a document from bytes in memory. Searches for includes only in the search folders.
[[nodiscard]] BK_PARSER_API RecoverResult recover_bytes(std::string_view bytes,
                                                        const LoadOptions& options = {});

} // namespace bk_parser
