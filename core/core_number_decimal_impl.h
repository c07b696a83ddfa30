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
/// stand for anything that is behind it.
double nearest_double(std::uint64_t mantissa, std::int64_t exponent) noexcept;

inline bool rounds_to_nearest() noexcept {
    // 1 plus and minus something tiny are both 1 in this mode only. Volatile, so that it is asked at run time.
    const volatile float tiny = FLT_MIN;
    const float value = tiny;
    return 1.0f + value == 1.0f - value;
}

/// A whole number below 2^53 and a power of ten up to 10^22 are both exact doubles, so that one multiplication or
/// division gives the nearest double. False, and nothing converted, for other numbers.
inline bool convert_exactly(const Decimal& number, double& value) noexcept {
    static constexpr double powers[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                        1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                        1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
    if (number.significant > 19 || number.mantissa > (std::uint64_t{1} << 53) || number.exponent < -22 ||
        number.exponent > 22) {
        return false;
    }
    const double mantissa = static_cast<double>(number.mantissa);
    if (number.exponent == 0) {
        value = mantissa;
        return true;
    }
    if (FLT_EVAL_METHOD != 0 || !rounds_to_nearest()) {
        return false;
    }
    value = number.exponent < 0 ? mantissa / powers[-number.exponent] : mantissa * powers[number.exponent];
    return true;
}

} // namespace bk
