#pragma once

#include <cstddef>
#include <string_view>

/// Reads numbers in their usual spellings without a loop over the characters. Leaves every other word to the rules of
/// core_number_impl.h. Both give the same result for what is read here.
namespace bk {

/// The functions below may read this many bytes before the text, whatever these are. So they take the same steps for a text of any length:
/// a branch on the length would often mispredict.
inline constexpr std::size_t number_margin = 16;

/// A sign and up to eight digits.
bool read_margined_int(std::string_view text, int& value) noexcept;

/// A sign, and up to 19 digits with a point. Returns false where the rounding mode matters; core_number_impl.h then decides.
bool read_margined_decimal(std::string_view text, double& value) noexcept;

} // namespace bk
