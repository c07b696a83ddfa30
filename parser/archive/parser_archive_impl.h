#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace bk {

/// The first four bytes of the file of an archive.
inline constexpr std::string_view archive_magic = "KWAF";

/// The bytes of an index in the file of an archive with so many strings.
constexpr std::size_t archive_index_width(std::uint32_t string_count) noexcept {
    return string_count < 256 ? 1 : string_count < 65536 ? 2 : 4;
}

/// What the file of an archive has beside strings and indices: the magic, eight reserved bytes, and both counts.
inline constexpr std::size_t archive_frame_size = 4 + 8 + 4 + 4;

} // namespace bk
