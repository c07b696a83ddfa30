#pragma once

#include "core/text/core_eight_impl.h"
#include "core/text/core_vectors_impl.h"
#include "parser/words/parser_characters_impl.h"

#include <bit>
#include <cstddef>
#include <cstdint>

/// Searches for characters: sixteen at a time with SSE2, otherwise one or eight. Every function has a portable and a vector version,
/// which give the same result. SSE2 is guaranteed on x86-64, so the choice is made when compiling.
namespace bk {

/// One character at a time, or eight.
namespace portable {

/// Whether all are letters, digits or '_'.
inline bool are_name_characters(const char* p, std::size_t size, const char* /*end*/) noexcept {
    for (const char* const last = p + size; p != last; ++p) {
        if (is_char(*p, CHAR_NOT_IN_NAME)) {
            return false;
        }
    }
    return true;
}

/// The first quote or line break, or the end.
inline const char* find_string_stop(const char* p, const char* end) noexcept {
    for (; end - p >= 8; p += 8) {
        const std::uint64_t eight = load_eight(p);
        const std::uint64_t stops =
            find_in_eight(eight, '"') | find_in_eight(eight, '\n') | find_in_eight(eight, '\r');
        if (stops != 0) {
            return p + before_first(stops);
        }
    }
    while (p != end && !is_char(*p, CHAR_LINE_BREAK | CHAR_QUOTE)) {
        ++p;
    }
    return p;
}

/// The first character that a string spells with a backslash, or the end.
inline const char* find_escaped(const char* p, const char* end) noexcept {
    while (p != end && !is_char(*p, CHAR_ESCAPED)) {
        ++p;
    }
    return p;
}

/// The first character that may begin or end what the preprocessor looks for, or the end. A '0' counts only before an 'x'.
inline const char* find_directive(const char* p, const char* end) noexcept {
    const auto begins = [end](const char* at) {
        return is_char(*at, CHAR_DIRECTIVE) && (*at != '0' || (at + 1 != end && at[1] == 'x'));
    };
    while (p != end && !begins(p)) {
        ++p;
    }
    return p;
}

} // namespace portable

#if defined(BK_HAS_VECTORS)

/// Sixteen characters at a time, as long as there are so many.
namespace vector {

inline constexpr std::ptrdiff_t width = 16;

/// Sixteen characters. Each search gives 0xFF in the bytes of the characters that it finds, and 0 elsewhere.
class Block {
public:
    explicit Block(const char* text) noexcept
        : bytes_(_mm_loadu_si128(reinterpret_cast<const __m128i*>(text))) {}

    /// Makes a bit of each byte. The first character has the lowest bit.
    static unsigned int mask(__m128i found) noexcept {
        return static_cast<unsigned int>(_mm_movemask_epi8(found));
    }

    __m128i line_breaks() const noexcept { return either(is('\n'), is('\r')); }
    __m128i blanks(__m128i line_breaks) const noexcept {
        return either(line_breaks, either(is(' '), is('\t')));
    }
    __m128i run_ends(__m128i blanks) const noexcept {
        const __m128i brackets = either(is_but_for(1, ')'), either(is('{'), is('}')));
        const __m128i marks = either(either(is(','), is(':')), either(is('='), is('"')));
        return either(either(blanks, is('\0')), either(brackets, marks));
    }
    __m128i quotes() const noexcept { return is('"'); }
    __m128i double_marks() const noexcept { return either(is('.'), is('e')); }
    __m128i dashes() const noexcept { return is('-'); }
    __m128i digits() const noexcept { return at_most(_mm_sub_epi8(bytes_, _mm_set1_epi8('0')), 9); }
    __m128i name_characters(__m128i digits) const noexcept {
        const __m128i lower = _mm_or_si128(bytes_, _mm_set1_epi8(0x20));
        const __m128i letters = at_most(_mm_sub_epi8(lower, _mm_set1_epi8('a')), 'z' - 'a');
        return either(letters, either(digits, is('_')));
    }
    __m128i string_stops() const noexcept { return either(quotes(), line_breaks()); }
    __m128i escaped() const noexcept {
        const __m128i marks = either(is('\\'), either(is('"'), is('\'')));
        return either(marks, either(is('\t'), line_breaks()));
    }

    /// `next` has the characters one position further on.
    __m128i directives(const Block& next) const noexcept {
        const __m128i hexadecimal = _mm_and_si128(is('0'), next.is('x'));
        return either(either(is('#'), is('"')), either(is('/'), hexadecimal));
    }

private:
    static __m128i either(__m128i a, __m128i b) noexcept { return _mm_or_si128(a, b); }
    __m128i is(char character) const noexcept { return _mm_cmpeq_epi8(bytes_, _mm_set1_epi8(character)); }
    /// Finds two characters that differ only in this bit, which is set in `character`.
    __m128i is_but_for(char bit, char character) const noexcept {
        return _mm_cmpeq_epi8(_mm_or_si128(bytes_, _mm_set1_epi8(bit)), _mm_set1_epi8(character));
    }
    /// Finds bytes that are at most `limit`, as unsigned numbers.
    static __m128i at_most(__m128i bytes, char limit) noexcept {
        return _mm_cmpeq_epi8(_mm_min_epu8(bytes, _mm_set1_epi8(limit)), bytes);
    }

    __m128i bytes_;
};

inline bool are_name_characters(const char* p, std::size_t size, const char* end) noexcept {
    if (size > static_cast<std::size_t>(width) || end - p < width) {
        return portable::are_name_characters(p, size, end);
    }
    const unsigned int others = ~Block::mask(Block(p).name_characters(Block(p).digits()));
    return (others & ((1u << size) - 1)) == 0;
}

inline const char* find_string_stop(const char* p, const char* end) noexcept {
    for (; end - p >= width; p += width) {
        if (const unsigned int stops = Block::mask(Block(p).string_stops()); stops != 0) {
            return p + std::countr_zero(stops);
        }
    }
    return portable::find_string_stop(p, end);
}

inline const char* find_escaped(const char* p, const char* end) noexcept {
    for (; end - p >= width; p += width) {
        if (const unsigned int escaped = Block::mask(Block(p).escaped()); escaped != 0) {
            return p + std::countr_zero(escaped);
        }
    }
    return portable::find_escaped(p, end);
}

inline const char* find_directive(const char* p, const char* end) noexcept {
    for (; end - p > width; p += width) {
        if (const unsigned int found = Block::mask(Block(p).directives(Block(p + 1))); found != 0) {
            return p + std::countr_zero(found);
        }
    }
    return portable::find_directive(p, end);
}

} // namespace vector

#endif

#if defined(BK_USE_VECTORS)
using vector::are_name_characters;
using vector::find_directive;
using vector::find_escaped;
using vector::find_string_stop;
#else
using portable::are_name_characters;
using portable::find_directive;
using portable::find_escaped;
using portable::find_string_stop;
#endif

} // namespace bk
