#pragma once

#include <cstddef>
#include <string_view>

/// Reads numbers in their usual spellings without a loop over the characters. Leaves every other word to the rules of
/// core_number_impl.h. Both give the same result for what is read here.
namespace bk {

/// How many bytes in front of a text are read along with it, whatever they are. A text of any length is read by the same
/// few steps: how long a number is cannot be foreseen.
inline constexpr std::size_t number_margin = 16;

/// A sign and up to eight digits.
bool read_margined_int(std::string_view text, int& value) noexcept;

/// A sign, and up to 19 digits with a point. Left to the rules where the rounding mode matters.
bool read_margined_decimal(std::string_view text, double& value) noexcept;

} // namespace bk
