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

/// Whether this follows an int that was meant to be a double: "E5", "E-5".
bool is_exponent(std::string_view text) noexcept {
    if (text.size() < 2 || text[0] != 'E') {
        return false;
    }
    const std::string_view number = without_sign(text.substr(1));
    return !number.empty() && std::all_of(number.begin(), number.end(), is_digit);
}

std::string exponent_text(std::string_view word, const ValueFlaw&) {
    return shown(word) + " is read as " + std::string(word.substr(0, word.find('E'))) +
           ": an exponent is spelled with a small e";
}

std::string text_after_text(std::string_view word, const ValueFlaw& flaw) {
    return shown(word) + " is read as " + std::string(word.substr(0, flaw.offset)) + ", and " +
           shown(word.substr(flaw.offset)) + " is ignored";
}

ValueFlaw find_text_after(std::string_view word, std::size_t length) {
    const std::string_view rest = word.substr(length);
    return is_exponent(rest) ? ValueFlaw{codes::exponent_ignored, exponent_text, 0, word.size()}
                             : ValueFlaw{codes::text_after_number, text_after_text, length, rest.size()};
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

std::string int_range_text(std::string_view word, const ValueFlaw&) {
    return shown(word) + " is read as " + std::to_string(bk::text_to_int(word).value) +
           ": an int has 32 bits; with a point it is a double";
}

std::string double_range_text(std::string_view word, const ValueFlaw&) {
    const double number = bk::text_to_double(word).value;
    if (number == 0.0) {
        return shown(word) + " is read as 0: no double is so small";
    }
    const std::string_view digits = without_sign(word);
    const bool is_spelled_out = !is_digit(digits[0]) && digits[0] != '.';
    return shown(word) +
           (number > 0 ? " is read as 1.797e308, the largest double"
                       : " is read as -1.797e308, the lowest double") +
           (is_spelled_out ? ": a number is finite" : ": it is beyond every double");
}

ValueFlaw find_int_flaw(std::string_view word) {
    const bk::IntText number = bk::text_to_int(word);
    if (number.length != word.size()) {
        return find_text_after(word, number.length);
    }
    return is_int_in_range(word) ? ValueFlaw{}
                                 : ValueFlaw{codes::number_out_of_range, int_range_text, 0, word.size()};
}

ValueFlaw find_double_flaw(std::string_view word) {
    const bk::DoubleText number = bk::text_to_double(word);
    if (number.length != word.size()) {
        return find_text_after(word, number.length);
    }
    const bool is_in_range =
        std::isfinite(number.value) && (number.value != 0.0 || !is_other_than_zero(word));
    return is_in_range ? ValueFlaw{}
                       : ValueFlaw{codes::number_out_of_range, double_range_text, 0, word.size()};
}

} // namespace

ValueFlaw find_number_flaw(std::string_view word, bool is_int) {
    return is_int ? find_int_flaw(word) : find_double_flaw(word);
}

} // namespace bk_parser
