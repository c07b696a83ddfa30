#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

/// Shared by the readers of numbers: a position in a text, and tests of the character there.
namespace bk {

class NumberScanner {
public:
    explicit NumberScanner(std::string_view text) noexcept : text_(text) {}

    std::size_t position() const noexcept { return at_; }
    void go_to(std::size_t position) noexcept { at_ = position; }
    void advance() noexcept { ++at_; }

    /// The character here, NUL past the end: no character of a number is NUL.
    char peek() const noexcept { return at_ < text_.size() ? text_[at_] : '\0'; }
    bool at_digit() const noexcept { return peek() >= '0' && peek() <= '9'; }

    /// The value of the hexadecimal digit here, negative when there is none.
    int hex_digit() const noexcept {
        const char c = peek();
        if (c >= '0' && c <= '9') {
            return c - '0';
        }
        const char lower = lowered(c);
        return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
    }

    bool take(char c) noexcept {
        if (peek() != c) {
            return false;
        }
        advance();
        return true;
    }
    /// Takes a word, given in lower case, in either case.
    bool take_word(std::string_view word) noexcept {
        if (text_.size() - at_ < word.size()) {
            return false;
        }
        for (std::size_t i = 0; i < word.size(); ++i) {
            if (lowered(text_[at_ + i]) != word[i]) {
                return false;
            }
        }
        at_ += word.size();
        return true;
    }

    /// Passes the white space of the "C" locale and a sign; true when the sign is "-".
    bool skip_space_and_sign() noexcept {
        while (peek() == ' ' || (peek() >= '\t' && peek() <= '\r')) {
            advance();
        }
        const bool negative = peek() == '-';
        if (negative || peek() == '+') {
            advance();
        }
        return negative;
    }

    /// Takes an exponent: a letter, given in lower case, an optional sign and digits. When the digits are missing, takes nothing and
    /// returns 0. The result is at most exponent_limit, which is beyond every double.
    std::int64_t take_exponent(char letter) noexcept;

private:
    static char lowered(char c) noexcept { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; }

    std::string_view text_;
    std::size_t at_ = 0;
};

/// Larger than any length of text, small enough that sums of a few stay in range.
inline constexpr std::int64_t exponent_limit = std::int64_t{1} << 60;

inline std::int64_t NumberScanner::take_exponent(char letter) noexcept {
    const std::size_t before = at_;
    if (lowered(peek()) != letter) {
        return 0;
    }
    advance();
    const bool negative = peek() == '-';
    if (negative || peek() == '+') {
        advance();
    }
    if (!at_digit()) {
        at_ = before;
        return 0;
    }
    std::int64_t exponent = 0;
    for (; at_digit(); advance()) {
        if (exponent < exponent_limit / 16) {
            exponent = exponent * 10 + (peek() - '0');
        }
    }
    return negative ? -exponent : exponent;
}

} // namespace bk
