#pragma once

#include <cfloat>
#include <cstddef>
#include <cstdint>

/// Decimal numbers on their way to doubles.
namespace bk {

/// The double that is nearest to mantissa * 2^exponent, ties to even. The lowest bit of a mantissa of more than 53 bits may
/// stand for all the bits that were cut off below it.
double nearest_double(std::uint64_t mantissa, std::int64_t exponent) noexcept;

inline bool rounds_to_nearest() noexcept {
    // Only in this mode, 1 plus and 1 minus a tiny number are both 1. Volatile, so that the compiler does not compute this.
    const volatile float tiny = FLT_MIN;
    const float value = tiny;
    return 1.0f + value == 1.0f - value;
}

/// Powers of ten that are doubles.
inline constexpr double exact_powers_of_ten[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                                 1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                                 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
inline constexpr std::int64_t most_exact_power = 22;

/// Whether one multiplication or division by an exact power of ten gives the nearest double: the mantissa must be exact as a double, and
/// operations must round to nearest.
inline bool is_exact_operand(std::uint64_t mantissa) noexcept {
    return FLT_EVAL_METHOD == 0 && mantissa <= std::uint64_t{1} << 53 && rounds_to_nearest();
}

/// Converts a number with up to 22 places after the point. Returns false, and converts nothing, where the result would not be
/// exactly rounded.
inline bool divide_exactly(std::uint64_t mantissa, std::size_t places, double& value) noexcept {
    if (!is_exact_operand(mantissa)) {
        return false;
    }
    value = static_cast<double>(static_cast<std::int64_t>(mantissa)) / exact_powers_of_ten[places];
    return true;
}

/// Converts a number of up to 19 digits, the last `places` of which are after the point, to the nearest double. Returns false, and converts
/// nothing, for 0, and where the compiler has no 128-bit integers.
bool divide_by_ten_to(std::size_t places, std::uint64_t number, double& value) noexcept;

} // namespace bk
