#include "core/numbers/core_number_impl.h"
#include "document/problems/list/problem_codes_impl.h"
#include "document/problems/list/shown_word_impl.h"
#include "document/problems/values/value_checks_impl.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>
#include <system_error>

namespace bk_parser {

namespace {

bool is_digit(char character) noexcept {
    return bk::is_char(character, bk::CHAR_DIGIT);
}

std::string_view without_sign(std::string_view word) noexcept {
    return word.substr(word[0] == '-' || word[0] == '+' ? 1 : 0);
}

/// What stands behind an int that was meant to be a double: "E5", "E-5".
bool is_exponent(std::string_view text) noexcept {
    if (text.size() < 2 || text[0] != 'E') {
        return false;
    }
    const std::string_view number = without_sign(text.substr(1));
    return !number.empty() && std::all_of(number.begin(), number.end(), is_digit);
}

ValueFlaw find_text_after(std::string_view word, std::size_t length) {
    const std::string_view number = word.substr(0, length);
    const std::string_view rest = word.substr(length);
    if (is_exponent(rest)) {
        return {codes::exponent_ignored,
                shown(word) + " is read as " + std::string(number) +
                    ": an exponent is spelled with a small e",
                0, word.size()};
    }
    return {codes::text_after_number,
            shown(word) + " is read as " + std::string(number) + ", and " + shown(rest) + " is ignored",
            length, rest.size()};
}

bool is_int_in_range(std::string_view word) noexcept {
    if (word[0] == '+') {
        word.remove_prefix(1);
    }
    std::int32_t number = 0;
    return std::from_chars(word.data(), word.data() + word.size(), number).ec == std::errc();
}

/// Whether a digit before the exponent is not 0.
bool is_other_than_zero(std::string_view word) noexcept {
    const std::size_t end = std::min(word.find_first_of("eE"), word.size());
    return word.substr(0, end).find_first_of("123456789") != std::string_view::npos;
}

ValueFlaw find_int_flaw(std::string_view word) {
    const bk::IntText number = bk::text_to_int(word);
    if (number.length != word.size()) {
        return find_text_after(word, number.length);
    }
    if (is_int_in_range(word)) {
        return {};
    }
    return {codes::number_out_of_range,
            shown(word) + " is read as " + std::to_string(number.value) +
                ": an int has 32 bits; with a point it is a double",
            0, word.size()};
}

ValueFlaw find_double_flaw(std::string_view word) {
    const bk::DoubleText number = bk::text_to_double(word);
    if (number.length != word.size()) {
        return find_text_after(word, number.length);
    }
    const std::string_view digits = without_sign(word);
    if (!std::isfinite(number.value)) {
        const bool is_spelled_out = !is_digit(digits[0]) && digits[0] != '.';
        return {codes::number_out_of_range,
                shown(word) +
                    (number.value > 0 ? " is read as 1.797e308, the largest double"
                                      : " is read as -1.797e308, the lowest double") +
                    (is_spelled_out ? ": a number is finite" : ": it is beyond every double"),
                0, word.size()};
    }
    if (number.value == 0.0 && is_other_than_zero(word)) {
        return {codes::number_out_of_range, shown(word) + " is read as 0: no double is so small", 0,
                word.size()};
    }
    return {};
}

} // namespace

ValueFlaw find_number_flaw(std::string_view word, bool is_int) {
    return is_int ? find_int_flaw(word) : find_double_flaw(word);
}

} // namespace bk_parser
