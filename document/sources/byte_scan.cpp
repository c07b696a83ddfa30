#include "document/sources/byte_scan_impl.h"

#include "core/text/core_eight_impl.h"
#include "core/text/core_utf8_impl.h"
#include "core/text/core_vectors_impl.h"

#include <bit>
#include <cstdint>

namespace bk_parser {

namespace {

#if defined(BK_USE_VECTORS)

__m128i load(const char* text) noexcept {
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(text));
}

/// A bit for each of sixteen characters that is NUL or from 0x80 up.
unsigned int others_in(__m128i bytes) noexcept {
    const __m128i nuls = _mm_cmpeq_epi8(bytes, _mm_setzero_si128());
    return static_cast<unsigned int>(_mm_movemask_epi8(_mm_or_si128(bytes, nuls)));
}

const char* find_other(const char* p, const char* end) noexcept {
    for (; end - p >= 64; p += 64) {
        const __m128i a = load(p);
        const __m128i b = load(p + 16);
        const __m128i c = load(p + 32);
        const __m128i d = load(p + 48);
        const __m128i least = _mm_min_epu8(_mm_min_epu8(a, b), _mm_min_epu8(c, d));
        const __m128i nuls = _mm_cmpeq_epi8(least, _mm_setzero_si128());
        const __m128i highs = _mm_or_si128(_mm_or_si128(a, b), _mm_or_si128(c, d));
        if (_mm_movemask_epi8(_mm_or_si128(nuls, highs)) != 0) {
            break;
        }
    }
    for (; end - p >= 16; p += 16) {
        if (const unsigned int found = others_in(load(p)); found != 0) {
            return p + std::countr_zero(found);
        }
    }
    while (p != end && static_cast<signed char>(*p) > 0) {
        ++p;
    }
    return p;
}

#else

/// The first character that is NUL or from 0x80 up, or the end.
const char* find_other(const char* p, const char* end) noexcept {
    for (; end - p >= 8; p += 8) {
        const std::uint64_t eight = bk::load_eight(p);
        if (((eight | bk::find_in_eight(eight, '\0')) & bk::eight_of('\x80')) != 0) {
            break;
        }
    }
    while (p != end && static_cast<signed char>(*p) > 0) {
        ++p;
    }
    return p;
}

#endif

/// The length of a character of two or three bytes that is certainly well-formed. 0 for all others, which need a closer look.
std::size_t plain_length(const char* p) noexcept {
    const auto byte = [p](std::size_t i) { return static_cast<unsigned char>(p[i]); };
    const unsigned int lead = byte(0);
    if (lead - 0xE1u < 0xEDu - 0xE1u || lead == 0xEE) {
        return (byte(1) & 0xC0) == 0x80 && (byte(2) & 0xC0) == 0x80 ? 3 : 0;
    }
    return lead - 0xC2u < 0xE0u - 0xC2u && (byte(1) & 0xC0) == 0x80 ? 2 : 0;
}

/// Skips characters from 0x80 up as long as they are certainly well-formed.
const char* skip_plain(const char* p, const char* end) noexcept {
    while (end - p > 3) {
        const std::size_t length = plain_length(p);
        if (length == 0) {
            break;
        }
        p += length;
    }
    return p;
}

void take_bad(StrayBytes& found, std::size_t at) noexcept {
    if (found.bad_count++ == 0) {
        found.first_bad = at;
    }
}

void take_nul(StrayBytes& found, std::size_t at) noexcept {
    if (found.nul_count++ == 0) {
        found.first_nul = at;
    }
}

constexpr std::string_view mark = "\xEF\xBB\xBF";

} // namespace

std::size_t skip_clean_bytes(std::string_view text, std::size_t from) noexcept {
    const char* const begin = text.data();
    const char* const end = begin + text.size();
    const char* p = find_other(begin + from, end);
    for (; p != end; p = find_other(p, end)) {
        const auto at = static_cast<std::size_t>(p - begin);
        const std::size_t length = bk::utf8_length(text, at);
        if (length == 0 || *p == '\0' || text.substr(at, mark.size()) == mark) {
            break;
        }
        p = skip_plain(p + length, end);
    }
    return static_cast<std::size_t>(p - begin);
}

StrayBytes find_stray_bytes(std::string_view text) {
    StrayBytes found;
    const char* const begin = text.data();
    const char* const end = begin + text.size();
    for (const char* p = find_other(begin, end); p != end; p = find_other(p, end)) {
        p = skip_plain(p, end);
        if (p == end) {
            break;
        }
        const auto at = static_cast<std::size_t>(p - begin);
        const std::size_t length = bk::utf8_length(text, at);
        if (length == 0) {
            take_bad(found, at);
        } else if (*p == '\0') {
            take_nul(found, at);
        } else if (text.substr(at, mark.size()) == mark) {
            found.marks.push_back(at);
        }
        p += length == 0 ? 1 : length;
    }
    return found;
}

std::size_t find_line_end(std::string_view text, std::size_t from) noexcept {
    const char* const begin = text.data();
    const char* const end = begin + text.size();
    const char* p = begin + from;
    for (; end - p >= 8; p += 8) {
        const std::uint64_t eight = bk::load_eight(p);
        const std::uint64_t found = bk::find_in_eight(eight, '\n') | bk::find_in_eight(eight, '\r');
        if (found != 0) {
            return static_cast<std::size_t>(p - begin) + bk::before_first(found);
        }
    }
    while (p != end && *p != '\n' && *p != '\r') {
        ++p;
    }
    return static_cast<std::size_t>(p - begin);
}

} // namespace bk_parser
