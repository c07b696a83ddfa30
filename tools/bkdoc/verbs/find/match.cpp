#include "verbs/find/match.h"

#include "output/display/text_display.h"
#include "output/display/value_display.h"
#include "output/json_writer.h"
#include "parser/parser_group.h"

#include <cmath>

namespace bkdoc {

namespace {

constexpr std::size_t text_limit = 1000; // characters
constexpr unsigned int value_limit = 100;

std::string hexadecimal(const ParserEntry& entry, unsigned int i) {
    const auto* bytes = static_cast<const unsigned char*>(entry.get_binary_data(i));
    std::string text;
    for (unsigned int k = 0; k < entry.get_binary_data_size(i); ++k) {
        text += {hexadecimal_digits[bytes[k] >> 4], hexadecimal_digits[bytes[k] & 15]};
    }
    return text;
}

bool is_digit(char character) noexcept {
    return character >= '0' && character <= '9';
}

/// Whether JSON spells the number in the same way.
bool is_json_number(std::string_view text) noexcept {
    std::size_t at = text.starts_with('-') ? 1 : 0;
    const auto digits = [&] {
        const std::size_t begin = at;
        while (at < text.size() && is_digit(text[at])) {
            ++at;
        }
        return at - begin;
    };
    const bool leads_with_zero = at < text.size() && text[at] == '0';
    const std::size_t whole = digits();
    if (whole == 0 || (leads_with_zero && whole > 1)) {
        return false;
    }
    if (at < text.size() && text[at] == '.') {
        ++at;
        if (digits() == 0) {
            return false;
        }
    }
    if (at < text.size() && (text[at] == 'e' || text[at] == 'E')) {
        ++at;
        at += at < text.size() && (text[at] == '-' || text[at] == '+') ? 1 : 0;
        if (digits() == 0) {
            return false;
        }
    }
    return at == text.size();
}

/// A number that JSON cannot spell, such as inf, becomes a string.
std::string json_number(const ParserEntry& entry, unsigned int i) {
    std::string spelling(entry.get_word(i).get_view());
    if (is_json_number(spelling)) {
        return spelling;
    }
    const double number = entry.get_double(i);
    if (!std::isfinite(number)) {
        return json_string(spelling);
    }
    CoreString text;
    text += number;
    return std::string(text.get_view());
}

} // namespace

std::string spelled_value(const ParserEntry& entry, unsigned int i) {
    switch (entry.get_value_type(i)) {
    case ParserValue::TYPE_STRING:
        return shown_quoted(entry.get_string(i).get_view(), text_limit);
    case ParserValue::TYPE_GROUP:
    case ParserValue::TYPE_BINARY_DATA:
        return shown_value(entry, i);
    default:
        return shown(entry.get_word(i).get_view(), text_limit);
    }
}

std::string spelled_values(const Match& match) {
    if (!match.is_whole()) {
        return spelled_value(*match.entry, match.value);
    }
    std::string text;
    const unsigned int count = match.entry->get_value_count();
    for (unsigned int i = 0; i < count; ++i) {
        text += i == 0 ? "" : " ";
        if (i == value_limit) {
            return text.append(ellipsis) + " (" + counted(count, "value", "values") + ")";
        }
        text += spelled_value(*match.entry, i);
    }
    return text;
}

std::string plain_values(const Match& match) {
    const ParserEntry& entry = *match.entry;
    const bool is_single = !match.is_whole() || entry.get_value_count() == 1;
    const unsigned int i = match.is_whole() ? 0 : match.value;
    if (is_single && entry.is_value_string(i)) {
        return std::string(entry.get_string(i).get_view());
    }
    CoreString text;
    if (match.is_whole()) {
        entry.get_value_text(text, false, 1);
    } else if (entry.is_value_group(i)) {
        entry.get_group(i)->get_text(text, true, false, 1);
    } else {
        text = entry.get_word(i);
    }
    const std::string_view view = text.get_view();
    return std::string(view.substr(std::min(view.find_first_not_of(' '), view.size())));
}

std::string json_value(const ParserEntry& entry, unsigned int i) {
    switch (entry.get_value_type(i)) {
    case ParserValue::TYPE_INT:
    case ParserValue::TYPE_DOUBLE:
        return json_number(entry, i);
    case ParserValue::TYPE_BOOL:
        return entry.get_bool(i) ? "true" : "false";
    case ParserValue::TYPE_STRING:
        return json_string(entry.get_string(i).get_view());
    case ParserValue::TYPE_GROUP:
        return "{\"entries\": " + std::to_string(entry.get_group(i)->get_entries().get_count()) + "}";
    case ParserValue::TYPE_BINARY_DATA:
        return "{\"data\": \"" + hexadecimal(entry, i) + "\"}";
    default:
        return json_string(entry.get_word(i).get_view());
    }
}

} // namespace bkdoc
