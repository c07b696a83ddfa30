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
    /// The place in bytes of the file as it is stored. What is cut off begins at the end of the file.
    std::uint64_t offset = 0;
    /// Of what is cut off so much as the file announces; 0 where it does not say.
    std::uint64_t length = 0;
    /// What stood there, as far as it can be told: "values of 'lights/key/power'", "cut off". Names may hold any bytes.
    std::string what;
};

/// What a recovery gives.
struct RecoverResult {
    /// The document, and its problems as after a load. One more problem, "damaged" or "cut-off", sums up the lost parts. Problems of
    /// an archive count in the text that its words make.
    LoadResult loaded;
    /// By ascending place; at most 10,000. The last one of these says how many more there are.
    std::vector<LostPart> lost;

    /// Whether nothing is lost, and the document could be read.
    BK_PARSER_API bool is_whole() const;
};

/// Loads a binary, enciphered or archive file as `load` does, but goes on behind what is damaged, wherever a size or the next entry
/// shows where. A size that contradicts what it measures is taken from that. An entry that lost some of its values has those before.
/// A first word of the file that differs from a form's in one byte is taken for it. A text is loaded as `load` does; it has no lost
/// parts, for the parser goes on in any case.
///
/// What was read from the wrong place cannot be told from what was saved so: look at the document before it is used.
/// Linear in the size of the file.
[[nodiscard]] BK_PARSER_API RecoverResult recover(const std::filesystem::path& path,
                                                  const LoadOptions& options = {});

/// The same for bytes in memory. Includes are searched for in the search folders alone.
[[nodiscard]] BK_PARSER_API RecoverResult recover_bytes(std::string_view bytes,
                                                        const LoadOptions& options = {});

} // namespace bk_parser
