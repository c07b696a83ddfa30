#pragma once

#include "parser/text/parser_text_scan_impl.h"
#include "parser/words/parser_characters_impl.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

/// 64 characters of a text as bit masks, the first character's bit the lowest. Words are short: a loop over characters
/// is left every few of them, at a place that nobody can foresee, while in a mask the next place of interest is one
/// instruction away. The masks are made by vectors or by a table; all ways give the same.
namespace bk {

struct TextMasks {
    static constexpr std::ptrdiff_t width = 64;

    std::uint64_t blanks = 0;
    std::uint64_t breaks = 0;       // CHAR_LINE_BREAK
    std::uint64_t run_ends = 0;     // CHAR_ENDS_RUN
    std::uint64_t double_marks = 0; // CHAR_DOUBLE_MARK
    std::uint64_t quotes = 0;
};

namespace portable {

/// What the masks tell of a character, in the lowest bits of three numbers of sixteen bits: whether it is more than an
/// ordinary one of its kind, whether it ends a run without being a blank, and whether it is a blank.
constexpr std::array<std::uint64_t, 256> make_mask_table() {
    std::array<std::uint64_t, 256> table{};
    for (std::size_t i = 0; i < table.size(); ++i) {
        const auto character = static_cast<char>(i);
        const bool is_blank = is_char(character, CHAR_BLANK);
        const bool is_end = !is_blank && is_char(character, CHAR_ENDS_RUN);
        const bool is_special = is_char(character, CHAR_LINE_BREAK | CHAR_QUOTE | CHAR_DOUBLE_MARK);
        table[i] = std::uint64_t{is_blank} << 32 | std::uint64_t{is_end} << 16 | std::uint64_t{is_special};
    }
    return table;
}

inline constexpr std::array<std::uint64_t, 256> mask_table = make_mask_table();

inline void make_masks(const char* text, TextMasks& out) noexcept {
    constexpr unsigned int count = 16;
    std::uint64_t blanks = 0;
    std::uint64_t ends = 0;
    std::uint64_t specials = 0;
    for (unsigned int i = 0; i < TextMasks::width; i += count) {
        std::uint64_t of_sixteen = 0;
        for (unsigned int k = count; k-- != 0;) { // each moves those behind it up
            of_sixteen = 2 * of_sixteen + mask_table[static_cast<unsigned char>(text[i + k])];
        }
        blanks |= (of_sixteen >> 32) << i;
        ends |= (of_sixteen >> 16 & 0xFFFF) << i;
        specials |= (of_sixteen & 0xFFFF) << i;
    }
    const std::uint64_t run_ends = blanks | ends;
    out = {blanks, blanks & specials, run_ends, specials & ~run_ends, specials & ends};
}

} // namespace portable

#if defined(BK_HAS_VECTORS)

namespace vector {

inline void make_masks(const char* text, TextMasks& out) noexcept {
    TextMasks masks;
    for (unsigned int i = 0; i < TextMasks::width; i += width) {
        const Block block(text + i);
        const __m128i breaks = block.line_breaks();
        const __m128i blanks = block.blanks(breaks);
        masks.blanks |= std::uint64_t{Block::mask(blanks)} << i;
        masks.breaks |= std::uint64_t{Block::mask(breaks)} << i;
        masks.run_ends |= std::uint64_t{Block::mask(block.run_ends(blanks))} << i;
        masks.double_marks |= std::uint64_t{Block::mask(block.double_marks())} << i;
        masks.quotes |= std::uint64_t{Block::mask(block.quotes())} << i;
    }
    out = masks;
}

} // namespace vector

#endif

/// Into a place of the caller's: masks that are handed over by copies are read before they have arrived.
using MakeMasks = void (*)(const char* text, TextMasks& out) noexcept;

/// The fastest of the functions above, and of those that need more than every processor has.
MakeMasks fastest_make_masks() noexcept;

/// Of the characters up to `end`, of which there are fewer than a block has; a NUL stands for each that is missing.
inline void make_last_masks(MakeMasks make_masks, const char* text, const char* end,
                            TextMasks& out) noexcept {
    char padded[TextMasks::width] = {};
    std::memcpy(padded, text, static_cast<std::size_t>(end - text));
    make_masks(padded, out);
}

} // namespace bk
