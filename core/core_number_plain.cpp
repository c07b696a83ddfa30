#include "core/core_number_plain_impl.h"

#include "core/core_bytes_impl.h"
#include "core/core_number_decimal_impl.h"
#include "core/core_number_digits_impl.h"

#include <array>
#include <bit>

namespace bk {

bool read_plain_int(std::string_view text, int& value) noexcept {
    const bool negative = !text.empty() && text[0] == '-';
    text.remove_prefix(negative ? 1 : 0);
    if (text.empty() || text.size() > most_short_digits) {
        return false;
    }
    std::uint32_t number = 0;
    const auto* const bytes = reinterpret_cast<const unsigned char*>(text.data());
    if (!read_short_digits(load_le(bytes, text.size()), text.size(), number)) {
        return false;
    }
    value = negative ? -static_cast<int>(number) : static_cast<int>(number);
    return true;
}

bool read_short_decimal(std::string_view text, double& value) noexcept {
    const bool negative = !text.empty() && text[0] == '-';
    text.remove_prefix(negative ? 1 : 0);
    if (text.empty() || text.size() > most_short_digits) {
        return false;
    }
    std::uint64_t characters = load_le(reinterpret_cast<const unsigned char*>(text.data()), text.size());
    std::size_t count = text.size();
    Decimal number;
    if (const std::size_t point = find_point(characters, count); point != count) {
        characters = without(characters, point);
        --count;
        number.exponent = static_cast<std::int64_t>(point) - static_cast<std::int64_t>(count);
    }
    std::uint32_t mantissa = 0;
    if (count == 0 || !read_short_digits(characters, count, mantissa)) {
        return false;
    }
    number.mantissa = mantissa;
    if (!convert_exactly(number, value)) {
        return false;
    }
    value = negative ? -value : value;
    return true;
}

#if defined(__SIZEOF_INT128__)

namespace {

__extension__ using Wide = unsigned __int128;

constexpr std::size_t most_digits = 19; // ten to this power still is a 64-bit number

constexpr std::array<std::uint64_t, most_digits + 1> make_powers() {
    std::array<std::uint64_t, most_digits + 1> powers{1};
    for (std::size_t i = 1; i < powers.size(); ++i) {
        powers[i] = powers[i - 1] * 10;
    }
    return powers;
}

constexpr std::array<std::uint64_t, most_digits + 1> powers_of_ten = make_powers();

/// 2^127 divided by each power of ten, which is shifted up until its highest bit is set; rounded down, so that one is too
/// small by at most 1.
constexpr std::array<std::uint64_t, most_digits + 1> make_reciprocals() {
    std::array<std::uint64_t, most_digits + 1> reciprocals{~std::uint64_t{0}};
    for (std::size_t i = 1; i < reciprocals.size(); ++i) {
        const std::uint64_t divisor = powers_of_ten[i] << std::countl_zero(powers_of_ten[i]);
        reciprocals[i] = static_cast<std::uint64_t>((Wide{1} << 127) / divisor);
    }
    return reciprocals;
}

constexpr std::array<std::uint64_t, most_digits + 1> reciprocals_of_ten = make_reciprocals();

/// Whether a quotient of at least 63 bits that is too small by less than 2 rounds to 53 bits as the true one does: it does
/// but for just below the middle between two doubles.
constexpr bool rounds_surely(std::uint64_t quotient) noexcept {
    const int dropped = 11 - std::countl_zero(quotient);
    const std::uint64_t middle = std::uint64_t{1} << (dropped - 1);
    const std::uint64_t rest = quotient & (2 * middle - 1);
    return rest > middle || rest + 2 < middle;
}

/// Divides by a power of ten in whole numbers: up to 19 digits, 19 of them behind the point. Both numbers are shifted
/// up until their highest bit is set, so that the quotient has at least 63 bits. It is first estimated by a
/// multiplication; where that does not settle the rounding it is divided, and what is left over decides a tie. (Lemire,
/// "Number Parsing at a Gigabyte per Second", Software: Practice and Experience 51, 2021.) False when the number is
/// another one.
bool convert_by_division(const Decimal& number, double& value) noexcept {
    constexpr std::int64_t most = most_digits;
    if (number.significant > most || number.mantissa == 0 || number.exponent > 0 || number.exponent < -most) {
        return false;
    }
    const auto power = static_cast<std::size_t>(-number.exponent);
    const int up = std::countl_zero(number.mantissa);
    const int divisor_up = std::countl_zero(powers_of_ten[power]);
    const std::uint64_t mantissa = number.mantissa << up;
    auto quotient = static_cast<std::uint64_t>(static_cast<Wide>(mantissa) * reciprocals_of_ten[power] >> 64);
    bool is_exact = false;
    if (!rounds_surely(quotient)) {
        const Wide dividend = static_cast<Wide>(mantissa) << 63;
        const std::uint64_t divisor = powers_of_ten[power] << divisor_up;
        quotient = static_cast<std::uint64_t>(dividend / divisor);
        is_exact = dividend == static_cast<Wide>(quotient) * divisor;
    }
    value = nearest_double(quotient | (is_exact ? 0u : 1u), divisor_up - up - 63);
    return true;
}

/// Goes through the digits behind a point by eights; false when another character is among them. The text has at
/// least eight characters in all.
bool add_fraction(std::string_view text, std::size_t begin, std::uint64_t& number) noexcept {
    const auto* const bytes = reinterpret_cast<const unsigned char*>(text.data());
    std::uint32_t part = 0;
    for (; text.size() - begin > most_short_digits; begin += most_short_digits) {
        if (!read_eight_digits(load_le64(bytes + begin), part)) {
            return false;
        }
        number = number * powers_of_ten[most_short_digits] + part;
    }
    const std::size_t count = text.size() - begin;
    const std::uint64_t last = load_le64(bytes + text.size() - most_short_digits);
    if (count == 0 || !read_eight_digits(with_zeros_in_front(last, count), part)) {
        return false;
    }
    number = number * powers_of_ten[count] + part;
    return true;
}

} // namespace

bool read_long_decimal(std::string_view text, double& value) noexcept {
    const bool negative = !text.empty() && text[0] == '-';
    text.remove_prefix(negative ? 1 : 0);
    if (text.size() <= most_short_digits || text.size() > most_digits + 1) {
        return false;
    }
    const std::uint64_t beginning = load_le64(reinterpret_cast<const unsigned char*>(text.data()));
    const std::size_t point = find_point(beginning, most_short_digits);
    std::uint32_t whole = 0;
    if (point == 0 || point == most_short_digits || !read_short_digits(beginning, point, whole)) {
        return false;
    }
    Decimal number;
    number.mantissa = whole;
    number.significant = static_cast<std::int64_t>(text.size()) - 1; // zeros in front may count
    number.exponent = static_cast<std::int64_t>(point) - number.significant;
    if (!add_fraction(text, point + 1, number.mantissa) ||
        !(convert_exactly(number, value) || convert_by_division(number, value))) {
        return false;
    }
    value = negative ? -value : value;
    return true;
}

#else
bool read_long_decimal(std::string_view, double&) noexcept {
    return false;
}
#endif

} // namespace bk
