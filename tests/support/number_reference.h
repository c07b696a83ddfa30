#pragma once

#include "core/numbers/core_number_impl.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cctype>
#include <climits>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <string>

// The conversions of the C library in the "C" locale, in which a test process starts, for comparisons.

inline std::string shown(const std::string& text) {
    return testing::PrintToString(text);
}

/// Converts a decimal integer with the C library, and clamps the result to the nearest int.
inline bk::IntText reference_int(const std::string& text) {
    char* end = nullptr;
    const long long value = std::strtoll(text.c_str(), &end, 10);
    const long long nearest = value < INT_MIN ? INT_MIN : value > INT_MAX ? INT_MAX : value;
    return {static_cast<int>(nearest), static_cast<std::size_t>(end - text.c_str())};
}

inline void expect_int_as_the_c_library(const std::string& text) {
    const bk::IntText expected = reference_int(text);
    const bk::IntText got = bk::text_to_int(text);
    ASSERT_EQ(got.length, expected.length) << shown(text);
    ASSERT_EQ(got.value, expected.value) << shown(text);
}

/// Converts a double with the C library, as the C standard defines it.
inline bk::DoubleText reference_double(const std::string& text) {
    char* end = nullptr;
    const double value = std::strtod(text.c_str(), &end);
    const std::size_t length = static_cast<std::size_t>(end - text.c_str());
#if defined(__MINGW32__)
    // The function of MinGW-w64 reads a minus sign without a number as -0, and takes any characters in the parentheses after "nan".
    if (length == 0) {
        return {0.0, 0};
    }
    if (const std::size_t open = text.find('('); open < length) {
        const bool named =
            std::all_of(text.begin() + static_cast<std::ptrdiff_t>(open) + 1,
                        text.begin() + static_cast<std::ptrdiff_t>(length) - 1,
                        [](char c) { return c == '_' || std::isalnum(static_cast<unsigned char>(c)) != 0; });
        return {value, named ? length : open};
    }
#endif
    return {value, length};
}

inline void expect_double_as_the_c_library(const std::string& text) {
    const auto [expected, length] = reference_double(text);
    const bk::DoubleText got = bk::text_to_double(text);
    ASSERT_EQ(got.length, length) << shown(text);
    if (std::isnan(expected)) {
        ASSERT_TRUE(std::isnan(got.value)) << shown(text);
    } else {
        ASSERT_EQ(std::bit_cast<std::uint64_t>(got.value), std::bit_cast<std::uint64_t>(expected))
            << shown(text) << " gave " << got.value << " instead of " << expected;
    }
}

inline std::string double_text(double number) {
    char text[bk::number_text_capacity];
    return {text, bk::write_double(text, number)};
}
