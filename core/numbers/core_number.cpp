#include "core/numbers/core_number_impl.h"

#include "core/numbers/core_number_short_impl.h"
#include "core/numbers/core_number_text_impl.h"

#include <algorithm>
#include <bit>
#include <cfenv>
#include <charconv>
#include <cstdint>
#include <limits>

#if defined(__SSE2__) || defined(_M_X64)
#define BK_HAS_CONTROL_WORD 1
#include <xmmintrin.h>
#endif

namespace bk {
namespace {

std::size_t written(const char* out, const std::to_chars_result& result) noexcept {
    return static_cast<std::size_t>(result.ptr - out);
}

/// Whether the double is subnormal. Compares bits, because the processor may be set to treat subnormal numbers as zero.
bool is_subnormal(double number) noexcept {
    constexpr std::uint64_t fraction = (std::uint64_t{1} << 52) - 1;
    const std::uint64_t magnitude = std::bit_cast<std::uint64_t>(number) << 1 >> 1;
    return magnitude != 0 && magnitude <= fraction;
}

/// Sets the default floating-point environment, and restores the caller's in the destructor. Where the vector unit has a control
/// word of its own, sets that as well: not every C library resets it with the default environment.
class DefaultFloatingPoint {
public:
    DefaultFloatingPoint() noexcept {
        std::fegetenv(&before_);
        std::fesetenv(FE_DFL_ENV);
#if defined(BK_HAS_CONTROL_WORD)
        constexpr unsigned int all_masked = 0x1F80;
        _mm_setcsr(all_masked);
#endif
    }
    ~DefaultFloatingPoint() {
        std::fesetenv(&before_);
#if defined(BK_HAS_CONTROL_WORD)
        _mm_setcsr(control_word_);
#endif
    }
    DefaultFloatingPoint(const DefaultFloatingPoint&) = delete;
    DefaultFloatingPoint& operator=(const DefaultFloatingPoint&) = delete;

private:
    std::fenv_t before_;
#if defined(BK_HAS_CONTROL_WORD)
    unsigned int control_word_ = _mm_getcsr();
#endif
};

/// Appends ".0" to what std::to_chars writes when that has only digits: it would read back as an int.
std::size_t write_shortest(char* out, double number) noexcept {
    const std::size_t size = written(out, std::to_chars(out, out + number_text_capacity, number));
    const bool is_whole = std::none_of(out, out + size, [](char c) { return c == '.' || c > '9'; });
    if (is_whole) {
        out[size] = '.';
        out[size + 1] = '0';
    }
    return is_whole ? size + 2 : size;
}

} // namespace

IntText text_to_int(std::string_view text) noexcept {
    constexpr long long limit = std::numeric_limits<int>::max();
    NumberScanner scanner(text);
    const bool negative = scanner.skip_space_and_sign();
    const std::size_t first = scanner.position();
    long long value = 0;
    for (; scanner.at_digit(); scanner.advance()) {
        value = std::min(value * 10 + (scanner.peek() - '0'), limit + 1);
    }
    if (scanner.position() == first) {
        return {};
    }
    value = negative ? -value : std::min(value, limit);
    return {static_cast<int>(value), scanner.position()};
}

std::size_t write_int(char* out, int number) noexcept {
    return written(out, std::to_chars(out, out + number_text_capacity, number));
}

std::size_t write_unsigned(char* out, unsigned long long number) noexcept {
    return written(out, std::to_chars(out, out + number_text_capacity, number));
}

std::size_t write_double(char* out, double number) noexcept {
    static_assert(short_double_capacity <= number_text_capacity);
    if (const std::size_t size = write_short_double(out, number); size != 0) {
        return size;
    }
    if (is_subnormal(number)) {
        const DefaultFloatingPoint environment;
        return write_shortest(out, number);
    }
    return write_shortest(out, number);
}

} // namespace bk
