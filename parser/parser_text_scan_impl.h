#pragma once

#include "parser/parser_characters_impl.h"

#include <bit>
#include <cstddef>

#if defined(__SSE2__) || defined(_M_X64)
#define BK_SCAN_SSE2 1
#include <emmintrin.h>
#endif

/// The loops over characters that cutting words spends its time in. Words are short: leaving a loop costs more than
/// going round in it, because nobody can foresee when. So where there are vectors, 16 characters are looked at without
/// a branch. Every function is there twice, and both do the same; x86-64 always has the vectors, so nothing needs
/// to be asked at run time.
namespace bk {

/// A run of characters up to the one that may end a word.
struct TextRun {
    const char* end;      // the first character with a class of CHAR_ENDS_RUN
    unsigned int classes; // of the characters before; CHAR_NOT_IN_NAME and CHAR_DOUBLE_MARK are always right
};

/// One character at a time. They need a NUL behind the text, but for find_string_stop.
namespace portable {

inline TextRun scan_run(const char* p, const char* /*end*/) noexcept {
    unsigned int classes = 0;
    unsigned int found = classes_of(*p);
    while ((found & CHAR_ENDS_RUN) == 0) {
        classes |= found;
        found = classes_of(*++p);
    }
    return {p, classes};
}

/// The first character that is no space.
inline const char* skip_spaces(const char* p, const char* /*end*/) noexcept {
    while (*p == ' ') {
        ++p;
    }
    return p;
}

/// The first quote or line break, or the end.
inline const char* find_string_stop(const char* p, const char* end) noexcept {
    while (p != end && !is_char(*p, CHAR_LINE_BREAK | CHAR_QUOTE)) {
        ++p;
    }
    return p;
}

} // namespace portable

#if defined(BK_SCAN_SSE2)

/// Sixteen characters at a time, as long as there are so many.
namespace vector {

inline constexpr std::ptrdiff_t width = 16;

class Block {
public:
    explicit Block(const char* text) noexcept
        : bytes_(_mm_loadu_si128(reinterpret_cast<const __m128i*>(text))) {}

    __m128i is(char character) const noexcept { return _mm_cmpeq_epi8(bytes_, _mm_set1_epi8(character)); }
    /// Either of two characters that differ in this bit alone, which is set in `character`.
    __m128i is_but_for(char bit, char character) const noexcept {
        return _mm_cmpeq_epi8(_mm_or_si128(bytes_, _mm_set1_epi8(bit)), _mm_set1_epi8(character));
    }
    /// At most, as unsigned bytes.
    static __m128i at_most(__m128i bytes, char limit) noexcept {
        return _mm_cmpeq_epi8(_mm_min_epu8(bytes, _mm_set1_epi8(limit)), bytes);
    }

    /// What may end a run, and all other control characters.
    unsigned int run_ends() const noexcept {
        const __m128i low = at_most(bytes_, ' ');
        const __m128i brackets = either(is_but_for(1, ')'), either(is('{'), is('}')));
        const __m128i marks = either(either(is(','), is(':')), either(is('='), is('"')));
        return mask(either(low, either(brackets, marks)));
    }
    unsigned int double_marks() const noexcept { return mask(either(is('.'), is('e'))); }
    unsigned int name_characters() const noexcept {
        const __m128i lower = _mm_or_si128(bytes_, _mm_set1_epi8(0x20));
        const __m128i letters = at_most(_mm_sub_epi8(lower, _mm_set1_epi8('a')), 'z' - 'a');
        const __m128i digits = at_most(_mm_sub_epi8(bytes_, _mm_set1_epi8('0')), 9);
        return mask(either(letters, either(digits, is('_'))));
    }
    unsigned int spaces() const noexcept { return mask(is(' ')); }
    unsigned int string_stops() const noexcept { return mask(either(is('"'), either(is('\n'), is('\r')))); }

private:
    static __m128i either(__m128i a, __m128i b) noexcept { return _mm_or_si128(a, b); }
    /// A bit a character, the first one's the lowest.
    static unsigned int mask(__m128i bytes) noexcept {
        return static_cast<unsigned int>(_mm_movemask_epi8(bytes));
    }

    __m128i bytes_;
};

inline TextRun scan_run(const char* p, const char* end) noexcept {
    unsigned int classes = 0;
    while (end - p >= width) {
        const Block block(p);
        const unsigned int ends = block.run_ends();
        const unsigned int within = (ends - 1) & ~ends & 0xFFFFu; // the bits below the lowest of the ends
        classes |= unsigned{(within & ~block.name_characters()) != 0} * CHAR_NOT_IN_NAME;
        classes |= unsigned{(within & block.double_marks()) != 0} * CHAR_DOUBLE_MARK;
        if (ends != 0) {
            p += std::countr_zero(ends);
            break;
        }
        p += width;
    }
    if (is_char(*p, CHAR_ENDS_RUN)) {
        return {p, classes};
    }
    const TextRun rest = portable::scan_run(p, end); // near the end of the text, or a control character
    return {rest.end, rest.classes | classes};
}

inline const char* skip_spaces(const char* p, const char* end) noexcept {
    while (end - p >= width) {
        const unsigned int others = ~Block(p).spaces() & 0xFFFFu;
        if (others != 0) {
            return p + std::countr_zero(others);
        }
        p += width;
    }
    return portable::skip_spaces(p, end);
}

inline const char* find_string_stop(const char* p, const char* end) noexcept {
    while (end - p >= width) {
        if (const unsigned int stops = Block(p).string_stops(); stops != 0) {
            return p + std::countr_zero(stops);
        }
        p += width;
    }
    return portable::find_string_stop(p, end);
}

} // namespace vector

#endif

#if defined(BK_SCAN_SSE2) && !defined(BK_PARSER_PORTABLE)
using vector::find_string_stop;
using vector::scan_run;
using vector::skip_spaces;
#else
using portable::find_string_stop;
using portable::scan_run;
using portable::skip_spaces;
#endif

} // namespace bk
