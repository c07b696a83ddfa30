#pragma once

#include "core/reports/core_pace_impl.h"
#include "parser/parser_archive.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace bk {

/// The first four bytes of the file of an archive.
inline constexpr std::string_view archive_magic = "KWAF";

inline constexpr std::size_t archive_reserved_size = 8;
/// Is subtracted from each character in a file.
inline constexpr unsigned int archive_shift = 15;

/// How many bytes an index takes in the file of an archive with this many strings.
constexpr std::size_t archive_index_width(std::uint32_t string_count) noexcept {
    return string_count < 256 ? 1 : string_count < 65536 ? 2 : 4;
}

/// The bytes of an archive's file besides the strings and indices: the magic, eight reserved bytes, and both counts.
inline constexpr std::size_t archive_frame_size = 4 + 8 + 4 + 4;

/// What was found in the bytes of an archive.
enum class ArchiveBytes {
    whole,
    unknown_format,
    cut_in_head,
    cut_in_strings,
    cut_in_indices ///< the announced size is that of the whole archive
};

struct ArchiveTaken {
    ArchiveBytes result;
    core_uint64 size; // of the whole archive, as far as its bytes announce it
};

/// Appends what an archive file holds. When the file is cut off in its indices, takes the indices that are there only if
/// `takes_rest` is set. Tells `pace`, which may be null, how many bytes were taken.
ArchiveTaken take_archive(std::string_view bytes, ParserArchive& archive, bool takes_rest, Pace* pace);

/// Whether the text that the words make is within the limits.
bool is_text_within(const ParserArchive& archive, const ParserLimits& limits) noexcept;

/// That text, with `separator` after each word. With a line end as the separator, a damaged word cannot join the next one. Tells
/// `pace`, which may be null, how many bytes were made.
CoreString join_words(const ParserArchive& archive, Pace* pace, char separator = ' ');

/// The size of that text.
core_uint64 archive_text_size(const ParserArchive& archive) noexcept;

/// Appends the words of a group without braces. When it throws std::bad_alloc, some of the words have been appended.
void add_words(ParserArchive& archive, const ParserGroup& group);

/// The whole file of an archive.
std::string archive_file_bytes(const ParserArchive& archive);

} // namespace bk
