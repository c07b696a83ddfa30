#include "output/display/text_display.h"

#include "output/display/code_points.h"

#include <algorithm>

namespace bkdoc {

namespace {

unsigned byte_at(std::string_view text, std::size_t position) noexcept {
    return static_cast<unsigned char>(text[position]);
}

/// Control characters, marks that change the direction of writing, and invisible marks.
constexpr CodeRange not_shown[] = {{0x00, 0x1F},     {0x7F, 0x9F},     {0x200B, 0x200F},
                                   {0x2028, 0x202E}, {0x2060, 0x2069}, {0xFEFF, 0xFEFF}};

std::string hex_escape(unsigned byte) {
    return {'\\', 'x', hexadecimal_digits[byte >> 4], hexadecimal_digits[byte & 15]};
}

std::string escape_of(std::string_view character) {
    switch (character.front()) {
    case '\n':
        return "\\n";
    case '\r':
        return "\\r";
    case '\t':
        return "\\t";
    default:
        break;
    }
    std::string escaped;
    for (std::size_t i = 0; i < character.size(); ++i) {
        escaped += hex_escape(byte_at(character, i));
    }
    return escaped;
}

std::string shown_with(std::string_view text, std::size_t limit, bool quoted) {
    std::string result;
    std::size_t count = 0;
    for (std::size_t i = 0; i < text.size(); ++count) {
        if (count == limit) {
            return result.append(ellipsis);
        }
        const std::size_t length = utf8_length(text, i);
        const std::string_view character = text.substr(i, length == 0 ? 1 : length);
        if (!is_showable(character)) {
            result += escape_of(character);
        } else {
            if (quoted && (character == "\"" || character == "\\")) {
                result += '\\';
            }
            result += character;
        }
        i += character.size();
    }
    return result;
}

} // namespace

std::size_t character_start(std::string_view text, std::size_t position) noexcept {
    constexpr std::size_t longest_tail = 3;
    std::size_t start = position;
    while (start < text.size() && start - position < longest_tail && (byte_at(text, start) & 0xC0) == 0x80) {
        ++start;
    }
    return start;
}

bool is_showable(std::string_view character) noexcept {
    if (utf8_length(character, 0) != character.size()) {
        return false;
    }
    return !is_in(not_shown, code_point(character));
}

std::string shown(std::string_view text, std::size_t limit) {
    return shown_with(text, limit, false);
}

std::string shown_quoted(std::string_view text, std::size_t limit) {
    return "\"" + shown_with(text, limit, true) + "\"";
}

std::string grouped(unsigned long long number) {
    std::string digits = std::to_string(number);
    for (std::size_t end = digits.size(); end > 3; end -= 3) {
        digits.insert(end - 3, 1, ',');
    }
    return digits;
}

std::string counted(unsigned long long number, std::string_view one, std::string_view many) {
    return grouped(number).append(1, ' ').append(number == 1 ? one : many);
}

} // namespace bkdoc
