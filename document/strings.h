#pragma once

#include "core/core_string.h"

#include <compare>
#include <cstddef>
#include <functional>
#include <ostream>
#include <string>
#include <string_view>
#include <version>

#if defined(__cpp_lib_format)
#include <format>
#endif

/// Makes CoreString work with the strings of the standard library: comparing, ordering, hashing, appending, printing and converting.
/// The constructor of CoreString takes a std::string_view, and get_view returns one; no conversion is implicit.

inline bool operator==(const CoreBasicString& left, std::string_view right) noexcept {
    return left.get_view() == right;
}
/// By unsigned bytes, a shorter string before a longer one that begins with it.
inline std::strong_ordering operator<=>(const CoreBasicString& left, const CoreBasicString& right) noexcept {
    return left.get_view() <=> right.get_view();
}
inline std::strong_ordering operator<=>(const CoreBasicString& left, std::string_view right) noexcept {
    return left.get_view() <=> right;
}

/// Appends the characters, NUL bytes included. Changes nothing when the length would pass `max_length`.
inline CoreString& operator+=(CoreString& left, std::string_view right) {
    left.append(right);
    return left;
}

/// Pads and fills as for a std::string.
inline std::ostream& operator<<(std::ostream& stream, const CoreBasicString& text) {
    return stream << text.get_view();
}

/// The hash of a std::string_view of the same bytes.
template <>
struct std::hash<CoreString> {
    /// A hash of the characters: the same for every kind of text.
    std::size_t operator()(const CoreString& text) const noexcept {
        return std::hash<std::string_view>()(text.get_view());
    }
};

#if defined(__cpp_lib_format)
template <>
struct std::formatter<CoreString> : std::formatter<std::string_view> {
    template <class Context>
    auto format(const CoreString& text, Context& context) const {
        return std::formatter<std::string_view>::format(text.get_view(), context);
    }
};
#endif

namespace bk_parser {

/// The text as a string of the standard library.
inline std::string to_string(const CoreBasicString& text) {
    return std::string(text.get_view());
}

/// For containers in which you look up any kind of string without making a CoreString:
/// `std::unordered_map<CoreString, int, StringHash, StringEqual>`, `std::map<CoreString, int, std::less<>>`.
struct StringHash {
    /// Lets maps be searched by every kind of text, without making a string.
    using is_transparent = void;
    /// A hash of the characters: the same for every kind of text.
    std::size_t operator()(std::string_view text) const noexcept {
        return std::hash<std::string_view>()(text);
    }
    /// A hash of the characters: the same for every kind of text.
    std::size_t operator()(const CoreBasicString& text) const noexcept { return (*this)(text.get_view()); }
};
/// Compares texts of all kinds by their characters.
struct StringEqual {
    /// Lets maps be searched by every kind of text, without making a string.
    using is_transparent = void;
    /// Compares texts of all kinds by their characters.
    template <class Left, class Right>
    bool operator()(const Left& left, const Right& right) const noexcept {
        return left == right;
    }
};

} // namespace bk_parser
