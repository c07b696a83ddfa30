#include "parser/archive/parser_archive_impl.h"

namespace bk {

namespace {

/// The size of the file that holds the archive.
core_uint64 file_size_of(const ParserArchive& archive) noexcept {
    core_uint64 size = archive_frame_size;
    for (const CoreString& string : archive.strings) {
        size += core_uint64{string.get_length()} + 1;
    }
    const std::size_t width = archive_index_width(archive.strings.get_count());
    return size + core_uint64{archive.indices.get_count()} * width;
}

} // namespace

core_uint64 archive_text_size(const ParserArchive& archive) noexcept {
    core_uint64 size = 0;
    for (const unsigned int index : archive.indices) {
        if (index < archive.strings.get_count()) {
            size += core_uint64{archive.strings[index].get_length()} + 1;
        }
    }
    return size;
}

/// Compares the size before any memory is taken for the text. Divides instead of multiplying the ratio with the size, because the
/// product could wrap.
bool is_text_within(const ParserArchive& archive, const ParserLimits& limits) noexcept {
    const core_uint64 size = archive_text_size(archive);
    return size <= CoreString::max_length && size <= limits.archive_size &&
           (size <= limits.archive_free_size || (size - 1) / file_size_of(archive) < limits.archive_ratio);
}

CoreString join_words(const ParserArchive& archive, Pace* pace, char separator) {
    CoreString text;
    char* const begin = text.resize(static_cast<unsigned int>(archive_text_size(archive)));
    char* out = begin;
    for (const unsigned int index : archive.indices) {
        if (index < archive.strings.get_count()) {
            const std::string_view word = archive.strings[index].get_view();
            out += word.copy(out, word.size());
            *out++ = separator;
            if (pace != nullptr) {
                pace->reach(static_cast<std::size_t>(out - begin));
            }
        }
    }
    return text;
}

} // namespace bk
