#pragma once

#include <cstddef>
#include <string_view>

/// UTF-8 as RFC 3629 defines it: no over-long form, no surrogate, nothing above U+10FFFF.
namespace bk {

/// The length of the well-formed character at `position`; 0 when the byte there begins none.
std::size_t utf8_length(std::string_view text, std::size_t position) noexcept;

/// The number of characters: each well-formed character counts as one, and so does each byte that belongs to none.
std::size_t count_characters(std::string_view text) noexcept;

} // namespace bk
