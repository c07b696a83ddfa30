#pragma once

#include "core/core_string.h"

#include <concepts>
#include <cstddef>
#include <string_view>
#include <type_traits>

namespace bk_parser {

/// What converts to a std::string_view. nullptr itself does not: it is not a text.
template <class T>
concept TextLike = std::convertible_to<const T&, std::string_view> && !std::same_as<T, std::nullptr_t>;

/// A text as a parameter. A null pointer is the empty text. Refers to its argument, which must outlive it.
class TextRef {
public:
    /// Refers to the characters, which must outlive the call.
    template <TextLike Text>
    TextRef(const Text& text) noexcept : view_(view_of(text)) {}
    /// Refers to the characters, which must outlive the call.
    TextRef(const CoreBasicString& text) noexcept : view_(text.get_view()) {}

    /// The characters.
    std::string_view view() const noexcept { return view_; }

private:
    template <TextLike Text>
    static std::string_view view_of(const Text& text) noexcept {
        if constexpr (std::is_pointer_v<Text>) {
            return text == nullptr ? std::string_view() : std::string_view(text);
        } else {
            return text;
        }
    }

    std::string_view view_;
};

} // namespace bk_parser
