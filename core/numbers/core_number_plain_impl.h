#pragma once

#include <cstddef>
#include <string_view>

/// Numbers as nearly all documents spell them, read without a loop over their characters. What is another number, or none,
/// is left to the rules of core_number_impl.h; what is read here is read as they would.
namespace bk {

/// How many bytes in front of a text are read along with it, whatever they are. A text of any length is read by the same
/// few steps: how long a number is cannot be foreseen.
inline constexpr std::size_t number_margin = 16;

/// A sign and up to eight digits.
bool read_margined_int(std::string_view text, int& value) noexcept;

/// A sign, and up to 19 digits with a point. Left to the rules where the rounding mode matters.
bool read_margined_decimal(std::string_view text, double& value) noexcept;

} // namespace bk
