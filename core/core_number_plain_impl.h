#pragma once

#include <string_view>

/// Numbers as nearly all documents spell them, read without a loop over their characters. What is another number, or none,
/// is left to the rules of core_number_impl.h; what is read here is read as they would.
namespace bk {

/// A sign and up to eight digits.
bool read_plain_int(std::string_view text, int& value) noexcept;

/// A sign, and digits with or without a point, up to eight characters. Left to the rules where the rounding mode matters.
bool read_short_decimal(std::string_view text, double& value) noexcept;

/// A sign, up to 19 digits, and a point among the first eight characters behind the sign.
bool read_long_decimal(std::string_view text, double& value) noexcept;

} // namespace bk
