#include "core/text/core_utf8_impl.h"

namespace bk {

namespace {

unsigned byte_at(std::string_view text, std::size_t position) noexcept {
    return static_cast<unsigned char>(text[position]);
}

// The smallest code point that needs a sequence of this length. A smaller one in such a sequence is over-long.
constexpr unsigned smallest_code_point[] = {0, 0, 0x80, 0x800, 0x10000};

std::size_t length_from_lead(unsigned lead) noexcept {
    if (lead < 0x80) {
        return 1;
    }
    if (lead < 0xC2 || lead > 0xF4) {
        return 0;
    }
    return lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
}

bool is_scalar(unsigned code_point) noexcept {
    return code_point <= 0x10FFFF && (code_point < 0xD800 || code_point > 0xDFFF);
}

} // namespace

std::size_t utf8_length(std::string_view text, std::size_t position) noexcept {
    const unsigned lead = byte_at(text, position);
    const std::size_t length = length_from_lead(lead);
    if (length < 2) {
        return length;
    }
    if (length > text.size() - position) {
        return 0;
    }
    unsigned code_point = lead & (0x7Fu >> length);
    for (std::size_t i = 1; i < length; ++i) {
        const unsigned byte = byte_at(text, position + i);
        if ((byte & 0xC0) != 0x80) {
            return 0;
        }
        code_point = code_point << 6 | (byte & 0x3F);
    }
    return code_point >= smallest_code_point[length] && is_scalar(code_point) ? length : 0;
}

std::size_t count_characters(std::string_view text) noexcept {
    std::size_t count = 0;
    for (std::size_t i = 0; i < text.size(); ++count) {
        const std::size_t length = utf8_length(text, i);
        i += length == 0 ? 1 : length;
    }
    return count;
}

} // namespace bk
