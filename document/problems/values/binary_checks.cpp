#include "core/text/core_hexadecimal_impl.h"
#include "document/problems/list/problem_codes_impl.h"
#include "document/problems/list/shown_word_impl.h"
#include "document/problems/values/value_checks_impl.h"

#include <array>

namespace bk_parser {

namespace {

constexpr std::size_t prefix_length = 2;
constexpr std::size_t checksum_length = 8;
constexpr std::string_view written_for_no_bytes = "00000000"; // a checksum alone, as the library writes it
constexpr unsigned char no_digit = 0xFF;

constexpr std::array<unsigned char, 256> make_digit_values() {
    std::array<unsigned char, 256> values{};
    values.fill(no_digit);
    for (std::size_t i = 0; i < 128; ++i) {
        const int value = bk::hexadecimal_value(static_cast<char>(i));
        values[i] = value < 0 ? no_digit : static_cast<unsigned char>(value);
    }
    return values;
}

constexpr std::array<unsigned char, 256> digit_values = make_digit_values();

unsigned int digit_at(std::string_view digits, std::size_t i) noexcept {
    return digit_values[static_cast<unsigned char>(digits[i])];
}

/// The sum of all bytes. A character that is no digit sets a bit above the lowest four in `wrong`.
std::uint32_t sum_of(std::string_view digits, unsigned int& wrong) noexcept {
    std::uint32_t sum = 0;
    for (std::size_t i = 0; i < digits.size(); i += 2) {
        const unsigned int high = digit_at(digits, i);
        const unsigned int low = digit_at(digits, i + 1);
        wrong |= high | low;
        sum += high * 16 + low;
    }
    return sum;
}

std::uint32_t checksum_of(std::string_view digits) noexcept {
    std::uint32_t sum = 0;
    for (std::size_t i = checksum_length; i != 0; i -= 2) {
        sum = sum << 8 | digit_at(digits, i - 2) << 4 | digit_at(digits, i - 1);
    }
    return sum;
}

std::string spelled_checksum(std::uint32_t sum) {
    char text[checksum_length];
    char* out = text;
    for (int shift = 0; shift < 32; shift += 8) {
        out = bk::put_hexadecimal(out, static_cast<unsigned char>(sum >> shift & 0xFF));
    }
    return {text, sizeof text};
}

std::string odd_text(std::string_view word, const ValueFlaw&) {
    return shown(word) + " holds no bytes: its number of digits is odd";
}

std::string short_text(std::string_view word, const ValueFlaw&) {
    return shown(word) + " holds no bytes: its last eight digits are a checksum; numbers are decimal";
}

std::string digit_text(std::string_view word, const ValueFlaw& flaw) {
    const bool is_lower = word[flaw.offset] >= 'a' && word[flaw.offset] <= 'f';
    return shown(word.substr(flaw.offset, 1)) + " is not a digit of binary data, and its byte is read as 0" +
           (is_lower ? ": use upper case" : "");
}

std::string checksum_text(std::string_view word, const ValueFlaw& flaw) {
    unsigned int wrong = 0;
    const std::uint32_t sum = sum_of(word.substr(prefix_length, flaw.offset - prefix_length), wrong);
    return "the checksum of the bytes is " + spelled_checksum(sum) + ", not " +
           std::string(word.substr(flaw.offset)) + ": the data is damaged, or was edited";
}

ValueFlaw flaw_of_digits(std::string_view word, std::size_t from) {
    std::size_t at = from;
    while (digit_values[static_cast<unsigned char>(word[at])] != no_digit) {
        ++at;
    }
    return {codes::binary_data_digits, digit_text, at, 1};
}

} // namespace

ValueFlaw find_binary_flaw(std::string_view word) {
    const std::string_view digits = word.substr(prefix_length);
    if (digits.size() % 2 != 0) {
        return {codes::binary_data_empty, odd_text, 0, word.size()};
    }
    if (digits == written_for_no_bytes) {
        return {};
    }
    if (digits.size() <= checksum_length) {
        return {codes::binary_data_empty, short_text, 0, word.size()};
    }
    unsigned int wrong = 0;
    const std::string_view data = digits.substr(0, digits.size() - checksum_length);
    const std::string_view checksum = digits.substr(data.size());
    const std::uint32_t sum = sum_of(data, wrong);
    static_cast<void>(sum_of(checksum, wrong));
    if (wrong > 15) {
        return flaw_of_digits(word, prefix_length);
    }
    if (sum != checksum_of(checksum)) {
        return {codes::binary_data_checksum, checksum_text, word.size() - checksum_length, checksum_length};
    }
    return {};
}

} // namespace bk_parser
