#pragma once

#include <charconv>
#include <string_view>

namespace bench {

/// Reads a number from text in the fastest way of the standard library.
template <class Number>
Number number_of(std::string_view text) {
    Number value{};
    std::from_chars(text.data(), text.data() + text.size(), value);
    return value;
}

} // namespace bench
