#include "core/core_number_impl.h"

#include "core/core_bytes_impl.h"
#include "core/core_number_digits_impl.h"
#include "core/core_number_text_impl.h"

#include <algorithm>
#include <array>
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

bool rounds_to_nearest() noexcept {
    // 1 plus and minus something tiny are both 1 in this mode only. Volatile, so that it is asked at run time.
    const volatile float tiny = FLT_MIN;
    const float value = tiny;
    return 1.0f + value == 1.0f - value;
}

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
    std::uint64_t mantissa = 0;   // all significant digits, when there are at most 19
    std::int64_t significant = 0; // digits from the first that is not zero
    std::int64_t exponent = 0;    // ten's power of the last digit
    std::size_t digits = 0;
};

void scan_digits(NumberScanner& scanner, Decimal& number) noexcept {
    for (; scanner.at_digit(); scanner.advance()) {
        const unsigned int digit = static_cast<unsigned int>(scanner.peek() - '0');
        number.mantissa = number.mantissa * 10 + digit; // what it wraps to past 19 digits is not used
        number.significant += number.significant != 0 || digit != 0;
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

// A whole number below 2^53 and a power of ten up to 10^22 are both exact doubles, so that one multiplication
// or division gives the nearest double.
bool convert_exactly(const Decimal& number, double& value) noexcept {
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
    double value = 0.0;
    if (convert_exactly(number, value)) {
        return value;
    }
    const NearestRounding rounding;
    value = convert_digits(digits, 0.0);
    return value < 0.0 ? beyond : value;
}

/// The leading 64 bits of a hexadecimal number, the lowest one also set when any bit behind them is.
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

// Rounds in whole numbers, and puts the bits of the double together.
double convert_hexadecimal(const Hexadecimal& number) noexcept {
    if (number.mantissa == 0) {
        return 0.0;
    }
    const int shift = std::countl_zero(number.mantissa);
    const std::uint64_t bits = number.mantissa << shift;
    const std::int64_t exponent = number.exponent - shift + 63; // of the leading bit
    if (exponent > 1023) {
        return infinity;
    }
    if (exponent < -1075) {
        return 0.0;
    }
    // A normal double keeps 53 bits; below 2^-1022 there is one less for every power of two.
    const int dropped = exponent >= -1022 ? 11 : 11 + static_cast<int>(-1022 - exponent);
    std::uint64_t kept = dropped < 64 ? bits >> dropped : 0;
    const std::uint64_t rest = dropped < 64 ? bits << (64 - dropped) : bits;
    constexpr std::uint64_t half = std::uint64_t{1} << 63;
    const bool round_up = rest > half || (rest == half && (kept & 1) != 0);
    kept += round_up ? 1 : 0;
    // The leading bit of a normal number adds 1 to the exponent field, and so does a carry out of the mantissa.
    const std::int64_t field = exponent >= -1022 ? exponent + 1022 : 0;
    return std::bit_cast<double>((static_cast<std::uint64_t>(field) << 52) + kept);
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
    value = convert_hexadecimal(number);
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

#if defined(__SIZEOF_INT128__)
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
    value = convert_hexadecimal({quotient | (is_exact ? 0u : 1u), divisor_up - up - 63, true});
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

/// What nearly all the others are: a sign, up to 19 digits, and a point among the first eight characters.
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

/// What most numbers in a document are: a sign, and up to eight digits and a point.
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

bool take_decimal(std::string_view text, NumberScanner& scanner, double& value) noexcept {
    const std::size_t first = scanner.position();
    const Decimal number = scan_decimal(scanner);
    value = convert_decimal(number, text.substr(first, scanner.position() - first));
    return number.digits != 0;
}

} // namespace

DoubleText text_to_double(std::string_view text) noexcept {
    if (double plain = 0.0; read_short_decimal(text, plain) || read_long_decimal(text, plain)) {
        return {plain, text.size()};
    }
    NumberScanner scanner(text);
    const bool negative = scanner.skip_space_and_sign();
    double value = 0.0;
    if (!take_hexadecimal(scanner, value) && !take_decimal(text, scanner, value) &&
        !take_named(scanner, value)) {
        return {};
    }
    return {std::copysign(value, negative ? -1.0 : 1.0), scanner.position()};
}

} // namespace bk
