#pragma once

#include "core/text/core_vectors_impl.h"
#include "parser/parser_word.h"
#include "parser/text/parser_text_scan_impl.h"

#include <bit>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

/// Checks values for mistakes. The functions above the line run for every value and cheaply find that nothing is wrong. The others
/// look closely.
namespace bk_parser {

/// What is wrong with a value, and which of its characters are.
struct ValueFlaw {
    using Text = std::string (*)(std::string_view word, const ValueFlaw& flaw);

    std::string_view code;  // empty when nothing is wrong
    Text text = nullptr;    // composes the message
    std::size_t offset = 0; // in the word
    std::size_t length = 0;
};

inline constexpr std::string_view string_runs_on =
    "the string goes on after this quote, because a backslash is before it: put another value first, or let "
    "the string end "
    "otherwise";

#if defined(BK_USE_VECTORS)
/// A mask of the characters that are no digits; the first one has the lowest bit. Sixteen characters must be readable.
inline std::uint32_t find_others_than_digits(const char* text) noexcept {
    const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text));
    const __m128i offsets = _mm_sub_epi8(bytes, _mm_set1_epi8('0'));
    const __m128i are_digits = _mm_cmpeq_epi8(_mm_min_epu8(offsets, _mm_set1_epi8(9)), offsets);
    return ~static_cast<std::uint32_t>(_mm_movemask_epi8(are_digits)) & 0xFFFFu;
}
#endif

/// Whether a number certainly has no mistake: an optional sign and digits, of an int at most nine, of a double with a point
/// between or after them. `end` is the end of the text that has the word.
inline bool is_plain_number(std::string_view word, bool is_int, [[maybe_unused]] const char* end) noexcept {
    const char* const text = word.data();
    const std::size_t size = word.size();
    const bool is_signed = text[0] == '-';
    if (is_int && size > 9u + (is_signed ? 1 : 0)) {
        return false;
    }
#if defined(BK_USE_VECTORS)
    if (end - text < 16 || size > 32) {
        return false;
    }
    std::uint64_t others = find_others_than_digits(text);
    if (size > 16) {
        others |= std::uint64_t{find_others_than_digits(text + size - 16)} << (size - 16);
    }
    others &= (std::uint64_t{1} << size) - 1;
    others &= ~std::uint64_t{is_signed};
    if (is_int) {
        return others == 0;
    }
    return others != 0 && (others & (others - 1)) == 0 && text[std::countr_zero(others)] == '.';
#else
    std::size_t points = 0;
    for (std::size_t i = is_signed ? 1 : 0; i < size; ++i) {
        if (text[i] == '.') {
            ++points;
        } else if (!bk::is_char(text[i], bk::CHAR_DIGIT)) {
            return false;
        }
    }
    return size <= 32 && points == (is_int ? 0u : 1u);
#endif
}

/// Whether a name of that length is followed by brackets with digits alone.
inline bool is_plain_count(std::string_view word, std::size_t name_length) noexcept {
    std::size_t i = name_length + 1;
    while (bk::is_char(word[i], bk::CHAR_DIGIT)) {
        ++i;
    }
    return i + 1 == word.size() && i != name_length + 1;
}

/// Whether the characters between the quotes of a string include neither escapes nor quotes. `end` is the end of the text that contains them.
inline bool is_plain_text(std::string_view text, [[maybe_unused]] const char* end) noexcept {
    const char* const begin = text.data();
#if defined(BK_USE_VECTORS)
    if (text.size() <= 16 && end - begin >= 16) { // as nearly all are
        const std::uint32_t escaped = bk::vector::Block::mask(bk::vector::Block(begin).escaped());
        return (escaped & ((std::uint32_t{1} << text.size()) - 1)) == 0;
    }
#endif
    return bk::find_escaped(begin, begin + text.size()) == begin + text.size();
}

// ---------------------------------------------------------------------------------------------------------------------

/// Checks a word that is an int or a double.
ValueFlaw find_number_flaw(std::string_view word, bool is_int);

/// Checks a string with its quotes, from the character `from` on: a string may have several mistakes.
ValueFlaw find_string_flaw(std::string_view word, bool has_escapes, std::size_t from);

/// Checks a binary literal.
ValueFlaw find_binary_flaw(std::string_view word);

} // namespace bk_parser
