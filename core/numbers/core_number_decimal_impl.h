#pragma once

#include <cfloat>
#include <cstddef>
#include <cstdint>

/// Decimal numbers on their way to doubles.
namespace bk {

/// Digits with an optional point and an optional exponent.
struct Decimal {
    std::uint64_t mantissa = 0;   // all significant digits, when there are at most 19
    std::int64_t significant = 0; // digits from the first that is not zero
    std::int64_t exponent = 0;    // ten's power of the last digit
    std::size_t digits = 0;
};

/// The double that is nearest to mantissa * 2^exponent, ties to even. The lowest bit of a mantissa of more than 53 bits may
/// stand for all the bits that were cut off below it.
double nearest_double(std::uint64_t mantissa, std::int64_t exponent) noexcept;

inline bool rounds_to_nearest() noexcept {
    // 1 plus and minus something tiny are both 1 in this mode only. Volatile, so that it is asked at run time.
    const volatile float tiny = FLT_MIN;
    const float value = tiny;
    return 1.0f + value == 1.0f - value;
}

/// Powers of ten that are doubles.
inline constexpr double exact_powers_of_ten[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                                 1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                                 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
inline constexpr std::int64_t most_exact_power = 22;

/// Whether one operation with a power of ten gives the nearest double: when both are exact.
inline bool is_exact_operand(std::uint64_t mantissa) noexcept {
    return FLT_EVAL_METHOD == 0 && mantissa <= std::uint64_t{1} << 53 && rounds_to_nearest();
}

/// Converts a number with up to 22 places behind the point. Returns false, and converts nothing, where the result would not be
/// exactly rounded.
inline bool divide_exactly(std::uint64_t mantissa, std::size_t places, double& value) noexcept {
    if (!is_exact_operand(mantissa)) {
        return false;
    }
    value = static_cast<double>(static_cast<std::int64_t>(mantissa)) / exact_powers_of_ten[places];
    return true;
}

/// The nearest double to a number of up to 19 digits, of which so many stand behind the point. Returns false, and converts
/// nothing, for 0, and where the compiler has no 128-bit integers.
bool divide_by_ten_to(std::size_t places, std::uint64_t number, double& value) noexcept;

/// As divide_exactly, of a number with an exponent. False for one that is far from 1, too.
inline bool convert_exactly(const Decimal& number, double& value) noexcept {
    if (number.significant > 19 || number.exponent < -most_exact_power ||
        number.exponent > most_exact_power) {
        return false;
    }
    if (number.exponent <= 0) {
        return divide_exactly(number.mantissa, static_cast<std::size_t>(-number.exponent), value);
    }
    if (!is_exact_operand(number.mantissa)) {
        return false;
    }
    value = static_cast<double>(number.mantissa) * exact_powers_of_ten[number.exponent];
    return true;
}

} // namespace bk
