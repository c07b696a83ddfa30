#pragma once

#include "document/path.h"

#include <string>
#include <string_view>

namespace bk_parser {

/// The characters of a path, taken from left to right, and the first error.
class PathScanner {
public:
    explicit PathScanner(std::string_view text) : text_(text) {}

    bool is_at_end() const noexcept { return at_ == text_.size(); }
    std::size_t get_position() const noexcept { return at_; }
    /// The current character, NUL at the end. No rule accepts a NUL inside the path, so it is always an error.
    char peek() const noexcept { return is_at_end() ? '\0' : text_[at_]; }
    bool is_at_digit() const noexcept;

    bool take(char character) noexcept;
    bool take(std::string_view characters) noexcept;
    void skip_blanks() noexcept;
    /// Takes a name or keyword of the text syntax. When there is none, returns false and takes nothing.
    bool take_bare_name(std::string& name);
    /// A string in quotes; false after an error.
    bool take_string(std::string& text);
    /// A whole number below 0xFFFFFFFF; false after an error, which says what `meaning` it should have had.
    bool take_number(unsigned int& number, std::string_view meaning);
    /// A decimal number with sign, fraction and exponent; empty when there is none.
    std::string_view take_decimal() noexcept;

    /// Each stores the message for take_error and returns false.
    bool fail(std::string message, std::size_t offset);
    bool fail(std::string message) { return fail(std::move(message), at_); }
    /// Fails with a message that begins with the current character.
    bool fail_at_character(std::string_view advice);
    PathError take_error() { return std::move(error_); }

private:
    bool take_escape(std::string& text);
    void take_digits() noexcept;

    std::string_view text_;
    std::size_t at_ = 0;
    PathError error_;
};

} // namespace bk_parser
