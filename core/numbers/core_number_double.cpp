#include "core/numbers/core_number_impl.h"

#include "core/numbers/core_number_decimal_impl.h"
#include "core/numbers/core_number_text_impl.h"

#include <bit>
#include <cfenv>
#include <cfloat>
#include <charconv>
#include <cmath>
#include <limits>
#include <locale>
#include <sstream>
#include <string>

// Reading a double. The result is the double nearest to the number, ties to even, whatever rounding mode the
// thread is in.

namespace bk {
namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();

class NearestRounding {
public:
    NearestRounding() noexcept : before_(std::fegetround()) {
        if (before_ != FE_TONEAREST) {
            std::fesetround(FE_TONEAREST);
        }
    }
    ~NearestRounding() {
        if (before_ != FE_TONEAREST && before_ >= 0) {
            std::fesetround(before_);
        }
    }
    NearestRounding(const NearestRounding&) = delete;
    NearestRounding& operator=(const NearestRounding&) = delete;

private:
    int before_;
};

/// Digits with an optional point and an optional exponent.
struct Decimal {
    std::int64_t significant = 0; // digits from the first that is not zero
    std::int64_t exponent = 0;    // ten's power of the last digit
    std::size_t digits = 0;
};

void scan_digits(NumberScanner& scanner, Decimal& number) noexcept {
    for (; scanner.at_digit(); scanner.advance()) {
        number.significant += number.significant != 0 || scanner.peek() != '0';
        ++number.digits;
    }
}

Decimal scan_decimal(NumberScanner& scanner) noexcept {
    Decimal number;
    const std::size_t first = scanner.position();
    scan_digits(scanner, number);
    if (scanner.take('.')) {
        const std::size_t before_point = number.digits;
        scan_digits(scanner, number);
        number.exponent = -static_cast<std::int64_t>(number.digits - before_point);
    }
    if (number.digits == 0) {
        scanner.go_to(first);
    } else {
        number.exponent += scanner.take_exponent('e');
    }
    return number;
}

template <class T>
concept ReadByCharconv = requires(const char* text, T& value) {
    std::from_chars(text, text, value);
};

// Negative when the number is too large or too small for a double. Some standard libraries read only whole
// numbers with <charconv>; there a stream in the classic locale does it.
template <class T>
double convert_digits(std::string_view digits, T value) {
    if constexpr (ReadByCharconv<T>) {
        const std::from_chars_result result =
            std::from_chars(digits.data(), digits.data() + digits.size(), value);
        return result.ec == std::errc() ? value : -1.0;
    } else {
        std::istringstream stream{std::string(digits)};
        stream.imbue(std::locale::classic());
        stream >> value;
        return stream.fail() ? -1.0 : value;
    }
}

double convert_decimal(const Decimal& number, std::string_view digits) noexcept {
    if (number.significant == 0) {
        return 0.0;
    }
    // The number lies between 10^(magnitude-1) and 10^magnitude.
    const std::int64_t magnitude = number.significant + number.exponent;
    const double beyond = magnitude > 0 ? infinity : 0.0;
    if (magnitude > 310 || magnitude < -330) {
        return beyond;
    }
    const NearestRounding rounding;
    const double value = convert_digits(digits, 0.0);
    return value < 0.0 ? beyond : value;
}

/// The leading 64 bits of a hexadecimal number, the lowest one also set when any bit after them is.
struct Hexadecimal {
    std::uint64_t mantissa = 0;
    std::int64_t exponent = 0; // two's power of the lowest bit
    bool any = false;
};

void add_hex_digit(Hexadecimal& number, unsigned int digit) noexcept {
    number.any = true;
    if ((number.mantissa >> 60) == 0) {
        number.mantissa = number.mantissa * 16 + digit;
    } else {
        number.mantissa |= digit != 0 ? 1u : 0u;
        number.exponent += 4;
    }
}

Hexadecimal scan_hexadecimal(NumberScanner& scanner) noexcept {
    Hexadecimal number;
    for (; scanner.hex_digit() >= 0; scanner.advance()) {
        add_hex_digit(number, static_cast<unsigned int>(scanner.hex_digit()));
    }
    if (scanner.take('.')) {
        for (; scanner.hex_digit() >= 0; scanner.advance()) {
            add_hex_digit(number, static_cast<unsigned int>(scanner.hex_digit()));
            number.exponent -= 4;
        }
    }
    if (number.any) {
        number.exponent += scanner.take_exponent('p');
    }
    return number;
}

bool take_hexadecimal(NumberScanner& scanner, double& value) noexcept {
    const std::size_t first = scanner.position();
    if (!scanner.take_word("0x")) {
        return false;
    }
    const Hexadecimal number = scan_hexadecimal(scanner);
    if (!number.any) {
        scanner.go_to(first);
        return false;
    }
    value = nearest_double(number.mantissa, number.exponent);
    return true;
}

// "nan(...)" holds letters, digits and "_"; without its closing bracket only "nan" counts.
void take_nan_tag(NumberScanner& scanner) noexcept {
    const std::size_t first = scanner.position();
    if (!scanner.take('(')) {
        return;
    }
    const auto in_tag = [](char c) {
        return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
    };
    while (in_tag(scanner.peek())) {
        scanner.advance();
    }
    if (!scanner.take(')')) {
        scanner.go_to(first);
    }
}

bool take_named(NumberScanner& scanner, double& value) noexcept {
    if (scanner.take_word("inf")) {
        scanner.take_word("inity");
        value = infinity;
        return true;
    }
    if (scanner.take_word("nan")) {
        take_nan_tag(scanner);
        value = std::numeric_limits<double>::quiet_NaN();
        return true;
    }
    return false;
}

bool take_decimal(std::string_view text, NumberScanner& scanner, double& value) noexcept {
    const std::size_t first = scanner.position();
    const Decimal number = scan_decimal(scanner);
    value = convert_decimal(number, text.substr(first, scanner.position() - first));
    return number.digits != 0;
}

} // namespace

// Rounds in integers, and assembles the bits of the double. Drops at most 64 bits.
double nearest_double(std::uint64_t mantissa, std::int64_t exponent_of_lowest) noexcept {
    if (mantissa == 0) {
        return 0.0;
    }
    const int shift = std::countl_zero(mantissa);
    const std::uint64_t bits = mantissa << shift;
    const std::int64_t exponent = exponent_of_lowest - shift + 63; // of the leading bit
    if (exponent > 1023) {
        return infinity;
    }
    if (exponent < -1075) {
        return 0.0;
    }
    // A normal double keeps 53 bits; below 2^-1022 there is one less for every power of two.
    const int dropped = exponent >= -1022 ? 11 : 11 + static_cast<int>(-1022 - exponent);
    std::uint64_t kept = dropped < 64 ? bits >> dropped : 0;
    const std::uint64_t rest = bits << (64 - dropped);
    constexpr std::uint64_t half = std::uint64_t{1} << 63;
    const bool round_up = rest > half || (rest == half && (kept & 1) != 0);
    kept += round_up ? 1 : 0;
    // The leading bit of a normal number adds 1 to the exponent field, and so does a carry out of the mantissa.
    const std::int64_t field = exponent >= -1022 ? exponent + 1022 : 0;
    return std::bit_cast<double>((static_cast<std::uint64_t>(field) << 52) + kept);
}

DoubleText text_to_double(std::string_view text) noexcept {
    NumberScanner scanner(text);
    const bool negative = scanner.skip_space_and_sign();
    double value = 0.0;
    if (!take_hexadecimal(scanner, value) && !take_decimal(text, scanner, value) &&
        !take_named(scanner, value)) {
        return {};
    }
    return {std::copysign(value, negative ? -1.0 : 1.0), scanner.position()};
}

bool is_scanned_double(std::string_view text) noexcept {
    NumberScanner scanner(text);
    scanner.skip_space_and_sign();
    if (scanner.take_word("0x")) {
        return scanner.hex_digit() >= 0 || scanner.peek() == '.';
    }
    if (scanner.take_word("inf")) {
        return !scanner.take_word("i") || scanner.take_word("nity");
    }
    return text_to_double(text).length != 0;
}

} // namespace bk
