#pragma once

#include <optional>
#include <string_view>

namespace bkdoc {

/// What an archive is made of.
struct ArchiveFacts {
    unsigned int strings = 0;
    unsigned int words = 0;

    /// The bytes that the number of a string takes.
    unsigned int index_width() const noexcept { return strings < 256 ? 1 : strings < 65536 ? 2 : 4; }
};

/// Of the bytes of an archive file; nothing when they end too early.
std::optional<ArchiveFacts> archive_facts(std::string_view bytes) noexcept;

} // namespace bkdoc
