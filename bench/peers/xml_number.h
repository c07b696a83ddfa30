#pragma once

#include <charconv>
#include <string_view>

namespace bench {

/// How a program reads numbers from text when it cares for time.
template <class Number>
Number number_of(std::string_view text) {
    Number value{};
    std::from_chars(text.data(), text.data() + text.size(), value);
    return value;
}

} // namespace bench
