#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace bk_parser {

/// Bytes that no text should have, or only at its beginning.
struct StrayBytes {
    std::size_t nul_count = 0;
    std::size_t first_nul = 0;
    std::size_t bad_count = 0; // bytes that are no part of a well-formed UTF-8 character
    std::size_t first_bad = 0;
    std::vector<std::size_t> marks; // byte order marks

    bool are_none() const noexcept { return nul_count == 0 && bad_count == 0 && marks.empty(); }
};

/// Finds them. Linear; skips characters below 0x80 in blocks.
StrayBytes find_stray_bytes(std::string_view text);

/// Where the first stray byte from `from` on is; the size of the text when there is none. `from` is the beginning of a character. Stops
/// before a character that the end of the text cuts, so that the search can go on when more text is there.
std::size_t skip_clean_bytes(std::string_view text, std::size_t from) noexcept;

/// Returns where the first CR or LF from `from` on is; the size of the text when there is none.
std::size_t find_line_end(std::string_view text, std::size_t from) noexcept;

} // namespace bk_parser
