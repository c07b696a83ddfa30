#include "core/numbers/core_number_margined_impl.h"

#include "core/numbers/core_number_decimal_impl.h"
#include "core/numbers/core_number_digits_impl.h"
#include "core/text/core_bytes_impl.h"

#include <bit>
#include <cstdint>

namespace bk {

namespace {

constexpr std::size_t most_characters = 20; // after the sign

constexpr std::uint64_t ten_to_the_15 = 1000000000000000;

/// Reads the characters before the last sixteen, which were read already.
bool add_first_characters(const char* end, std::size_t count, PointedDigits& digits) noexcept {
    PointedDigits first;
    if (!read_pointed_digits(end, count, first)) {
        return false;
    }
    const bool has_later_point = digits.places >= 0; // and one digit less after it
    digits.number += first.number * (has_later_point ? ten_to_the_15 : 10 * ten_to_the_15);
    if (has_later_point) {
        return first.places < 0;
    }
    digits.places = first.places + static_cast<int>(most_pointed_digits);
    return first.places >= 0;
}

/// False when the text has no point, too.
bool read_digits(std::string_view text, PointedDigits& digits) noexcept {
    const char* const end = text.data() + text.size();
    if (text.size() <= most_pointed_digits) {
        return read_pointed_digits(end, text.size(), digits) && digits.places >= 0;
    }
    return read_pointed_digits(end, most_pointed_digits, digits) &&
           add_first_characters(end - most_pointed_digits, text.size() - most_pointed_digits, digits);
}

int starts_with_minus(std::string_view text) noexcept {
    return !text.empty() && text[0] == '-' ? 1 : 0;
}

/// Without a branch, which would mispredict for signs too.
int with_sign(std::uint32_t magnitude, int is_negative) noexcept {
    return (static_cast<int>(magnitude) ^ -is_negative) + is_negative;
}

} // namespace

bool read_margined_int(std::string_view text, int& value) noexcept {
    const int is_negative = starts_with_minus(text);
    const std::size_t size = text.size() - static_cast<std::size_t>(is_negative);
    std::uint32_t number = 0;
    if (size - 1 >= most_short_digits || // also without any
        !read_eight_digits(eight_before(text.data() + text.size(), size), number)) {
        return false;
    }
    value = with_sign(number, is_negative);
    return true;
}

bool read_margined_decimal(std::string_view text, double& value) noexcept {
    const auto is_negative = static_cast<std::uint64_t>(starts_with_minus(text));
    text.remove_prefix(is_negative);
    PointedDigits digits;
    if (text.size() < 2 || text.size() > most_characters ||
        !read_digits(text, digits)) { // a point alone is none
        return false;
    }
    const auto places = static_cast<std::size_t>(digits.places);
    double magnitude = 0.0;
    if (!divide_exactly(digits.number, places, magnitude) &&
        !divide_by_ten_to(places, digits.number, magnitude)) {
        return false;
    }
    value = std::bit_cast<double>(std::bit_cast<std::uint64_t>(magnitude) | is_negative << 63);
    return true;
}

} // namespace bk
