#include "core/core_number_impl.h"

#include "core/core_number_text_impl.h"

#include <algorithm>
#include <charconv>
#include <limits>

namespace bk {
namespace {

std::size_t written(const char* out, const std::to_chars_result& result) noexcept {
    return static_cast<std::size_t>(result.ptr - out);
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
    return written(out, std::to_chars(out, out + number_text_capacity, number));
}

} // namespace bk
