#include "core/numbers/core_number_decimal_impl.h"

#include <array>
#include <bit>

namespace bk {

#if defined(__SIZEOF_INT128__)

namespace {

__extension__ using Wide = unsigned __int128;

constexpr std::size_t most_places = 19; // ten to this power still is a 64-bit number

constexpr std::array<std::uint64_t, most_places + 1> make_powers() {
    std::array<std::uint64_t, most_places + 1> powers{1};
    for (std::size_t i = 1; i < powers.size(); ++i) {
        powers[i] = powers[i - 1] * 10;
    }
    return powers;
}

constexpr std::array<std::uint64_t, most_places + 1> powers_of_ten = make_powers();

/// 2^127 divided by each power of ten, which is shifted up until its highest bit is set; rounded down, so that one is too
/// small by at most 1.
constexpr std::array<std::uint64_t, most_places + 1> make_reciprocals() {
    std::array<std::uint64_t, most_places + 1> reciprocals{~std::uint64_t{0}};
    for (std::size_t i = 1; i < reciprocals.size(); ++i) {
        const std::uint64_t divisor = powers_of_ten[i] << std::countl_zero(powers_of_ten[i]);
        reciprocals[i] = static_cast<std::uint64_t>((Wide{1} << 127) / divisor);
    }
    return reciprocals;
}

constexpr std::array<std::uint64_t, most_places + 1> reciprocals_of_ten = make_reciprocals();

/// Whether a quotient of at least 63 bits, too small by less than 2, rounds to 53 bits as the exact one does. It does, except just
/// below the middle between two doubles.
constexpr bool rounds_surely(std::uint64_t quotient) noexcept {
    const int dropped = 11 - std::countl_zero(quotient);
    const std::uint64_t middle = std::uint64_t{1} << (dropped - 1);
    const std::uint64_t rest = quotient & (2 * middle - 1);
    return rest > middle || rest + 2 < middle;
}

} // namespace

/// Divides by a power of ten in integers. Shifts both numbers up until their highest bit is set, so that the quotient has at least
/// 63 bits. First estimates the quotient by a multiplication. Where the estimate does not settle the rounding, divides; the
/// remainder then decides a tie. (Lemire, "Number Parsing at a Gigabyte per Second", Software: Practice and Experience 51, 2021.)
bool divide_by_ten_to(std::size_t places, std::uint64_t number, double& value) noexcept {
    if (number == 0 || places > most_places) {
        return false;
    }
    const int up = std::countl_zero(number);
    const int divisor_up = std::countl_zero(powers_of_ten[places]);
    const std::uint64_t mantissa = number << up;
    auto quotient =
        static_cast<std::uint64_t>(static_cast<Wide>(mantissa) * reciprocals_of_ten[places] >> 64);
    bool is_exact = false;
    if (!rounds_surely(quotient)) {
        const Wide dividend = static_cast<Wide>(mantissa) << 63;
        const std::uint64_t divisor = powers_of_ten[places] << divisor_up;
        quotient = static_cast<std::uint64_t>(dividend / divisor);
        is_exact = dividend == static_cast<Wide>(quotient) * divisor;
    }
    value = nearest_double(quotient | (is_exact ? 0u : 1u), divisor_up - up - 63);
    return true;
}

#else

bool divide_by_ten_to(std::size_t, std::uint64_t, double&) noexcept {
    return false;
}

#endif

} // namespace bk
