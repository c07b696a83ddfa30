#include "document/sources/byte_facts_impl.h"

#include "document/sources/byte_scan_impl.h"

#include <cstddef>

namespace bk_parser {

namespace {

/// The line feeds of a piece that a byte can count.
unsigned char count_in_block(const char* text, std::size_t size) noexcept {
    unsigned char count = 0;
    for (std::size_t i = 0; i < size; ++i) {
        count = static_cast<unsigned char>(count + (text[i] == '\n' ? 1 : 0));
    }
    return count;
}

} // namespace

void ByteFacts::add(std::string_view bytes, std::size_t begin) noexcept {
    const std::string_view piece = bytes.substr(begin);
    size_ = bytes.size();
    clean_ = skip_clean_bytes(bytes, clean_);
    has_returns_ = has_returns_ || piece.find('\r') != std::string_view::npos;
    line_feeds_ += count_line_feeds(piece);
}

/// Counts in blocks of one size, a multiple of a vector's, for which the compiler makes half as many instructions as for blocks of any
/// size.
std::uint64_t count_line_feeds(std::string_view text) noexcept {
    constexpr std::size_t block = 192;
    std::uint64_t count = 0;
    std::size_t begin = 0;
    for (; text.size() - begin >= block; begin += block) {
        count += count_in_block(text.data() + begin, block);
    }
    return count + count_in_block(text.data() + begin, text.size() - begin);
}

} // namespace bk_parser
