#pragma once

#include <optional>
#include <string_view>

namespace bkdoc {

/// The numbers in the head of an archive.
struct ArchiveFacts {
    unsigned int strings = 0;
    unsigned int words = 0;

    /// How many bytes a string's index takes.
    unsigned int index_width() const noexcept { return strings < 256 ? 1 : strings < 65536 ? 2 : 4; }
};

/// Reads them from the bytes of an archive; nothing when the file ends too early.
std::optional<ArchiveFacts> archive_facts(std::string_view bytes) noexcept;

} // namespace bkdoc
