#include "core/text/core_bytes_impl.h"
#include "parser/archive/parser_archive_impl.h"

#include <algorithm>

namespace bk {

namespace {

char restored(char byte) noexcept {
    return static_cast<char>(static_cast<unsigned char>(byte) + archive_shift);
}

/// Appends strings as long as there are bytes. False when they end within a string.
bool take_strings(ByteCursor& cursor, std::uint32_t count, CoreVector<CoreString>& strings, Pace* pace) {
    for (std::uint32_t i = 0; i < count && !cursor.at_end(); ++i) {
        const std::string_view rest = cursor.rest();
        const std::size_t size = rest.find('\0');
        if (size > CoreString::max_length) { // no NUL, or further on than a string reaches
            return false;
        }
        CoreString string;
        std::transform(rest.begin(), rest.begin() + static_cast<std::ptrdiff_t>(size),
                       string.resize(static_cast<unsigned int>(size)), restored);
        strings.add(string);
        cursor.skip(size + 1);
        if (pace != nullptr) {
            pace->reach(cursor.position());
        }
    }
    return true;
}

void take_indices(ByteCursor& cursor, std::uint32_t count, std::size_t width,
                  CoreVector<unsigned int>& indices, Pace* pace) {
    unsigned int* const out = indices.extend(count);
    for (std::uint32_t i = 0; i < count; ++i) {
        out[i] = static_cast<unsigned int>(cursor.take(width));
        if (pace != nullptr) {
            pace->reach(cursor.position());
        }
    }
}

} // namespace

ArchiveTaken take_archive(std::string_view bytes, ParserArchive& archive, bool takes_rest, Pace* pace) {
    constexpr std::size_t head_size = archive_magic.size() + archive_reserved_size + sizeof(std::uint32_t);
    if (bytes.size() >= archive_magic.size() && !bytes.starts_with(archive_magic)) {
        return {ArchiveBytes::unknown_format, 0};
    }
    if (bytes.size() < head_size) {
        return {ArchiveBytes::cut_in_head, archive_frame_size};
    }
    ByteCursor cursor(bytes.data(), bytes.size(), archive_magic.size() + archive_reserved_size);
    const auto string_count = cursor.take<std::uint32_t>();
    if (!take_strings(cursor, string_count, archive.strings, pace)) {
        return {ArchiveBytes::cut_in_strings, 0};
    }
    if (cursor.rest().size() < sizeof(std::uint32_t)) {
        return {ArchiveBytes::cut_in_strings, 0};
    }
    const std::size_t width = archive_index_width(string_count);
    const auto index_count = cursor.take<std::uint32_t>();
    const core_uint64 size = cursor.position() + core_uint64{index_count} * width;
    const bool is_whole = size <= bytes.size();
    if (is_whole || takes_rest) {
        const auto present =
            static_cast<std::uint32_t>(std::min<core_uint64>(index_count, cursor.rest().size() / width));
        take_indices(cursor, present, width, archive.indices, pace);
    }
    return {is_whole ? ArchiveBytes::whole : ArchiveBytes::cut_in_indices, size};
}

} // namespace bk
