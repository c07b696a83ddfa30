#pragma once

#include "parser/text/parser_text_scan_impl.h"
#include "parser/words/parser_characters_impl.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

/// 64 characters of a text as bit masks; the first character has the lowest bit. A mask gives the next place of interest in one
/// instruction. A loop over the characters would exit every few of them, because words are short, and each exit would mispredict.
/// The masks are made by vectors or by a table, with the same result.
namespace bk {

struct TextMasks {
    static constexpr std::ptrdiff_t width = 64;

    std::uint64_t blanks = 0;
    std::uint64_t breaks = 0;       // CHAR_LINE_BREAK
    std::uint64_t run_ends = 0;     // CHAR_ENDS_RUN
    std::uint64_t double_marks = 0; // CHAR_DOUBLE_MARK
    std::uint64_t quotes = 0;
    std::uint64_t names = 0;  // CHAR_NAME
    std::uint64_t digits = 0; // CHAR_DIGIT
    std::uint64_t dashes = 0; // '-'
};

namespace portable {

/// For each character one byte for each mask, in the order of the structure: 1 when the character is in the mask.
constexpr std::array<std::uint64_t, 256> make_mask_table() {
    std::array<std::uint64_t, 256> table{};
    for (std::size_t i = 0; i < table.size(); ++i) {
        const auto character = static_cast<char>(i);
        unsigned int place = 0;
        const auto put = [&](bool is_in) { table[i] |= std::uint64_t{is_in} << 8 * place++; };
        for (const CharacterClass wanted : {CHAR_BLANK, CHAR_LINE_BREAK, CHAR_ENDS_RUN, CHAR_DOUBLE_MARK,
                                            CHAR_QUOTE, CHAR_NAME, CHAR_DIGIT}) {
            put(is_char(character, wanted));
        }
        put(character == '-');
    }
    return table;
}

inline constexpr std::array<std::uint64_t, 256> mask_table = make_mask_table();

/// Takes eight characters at a time, the last one first. Each step shifts the bits of the later characters up, in all bytes at once.
inline void make_masks(const char* text, TextMasks& out) noexcept {
    std::uint64_t masks[8] = {};
    for (unsigned int i = 0; i < TextMasks::width; i += 8) {
        std::uint64_t of_eight = 0;
        for (unsigned int k = 8; k-- != 0;) {
            of_eight = 2 * of_eight + mask_table[static_cast<unsigned char>(text[i + k])];
        }
        for (unsigned int mask = 0; mask < 8; ++mask) {
            masks[mask] |= (of_eight >> 8 * mask & 0xFF) << i;
        }
    }
    out = {masks[0], masks[1], masks[2], masks[3], masks[4], masks[5], masks[6], masks[7]};
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
        const __m128i digits = block.digits();
        masks.names |= std::uint64_t{Block::mask(block.name_characters(digits))} << i;
        masks.digits |= std::uint64_t{Block::mask(digits)} << i;
        masks.dashes |= std::uint64_t{Block::mask(block.dashes())} << i;
    }
    out = masks;
}

} // namespace vector

#endif

/// Writes into the caller's object, because copying masks that were just stored would cause a store-forwarding stall.
using MakeMasks = void (*)(const char* text, TextMasks& out) noexcept;

/// The fastest function for this processor: one of those above, or one that needs more than SSE2.
MakeMasks fastest_make_masks() noexcept;

/// Makes the masks of fewer characters than a block has, up to `end`. Takes a NUL for each missing character.
inline void make_last_masks(MakeMasks make_masks, const char* text, const char* end,
                            TextMasks& out) noexcept {
    char padded[TextMasks::width] = {};
    std::memcpy(padded, text, static_cast<std::size_t>(end - text));
    make_masks(padded, out);
}

} // namespace bk
