#include "document/json/json_words_impl.h"

#include <cstdint>

namespace bk_parser {

namespace {

constexpr std::string_view base64_digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

/// The value of a digit; negative for any other character.
int base64_value(char digit) noexcept {
    if (digit >= 'A' && digit <= 'Z') {
        return digit - 'A';
    }
    if (digit >= 'a' && digit <= 'z') {
        return digit - 'a' + 26;
    }
    if (digit >= '0' && digit <= '9') {
        return digit - '0' + 52;
    }
    return digit == '+' ? 62 : digit == '/' ? 63 : -1;
}

void put_digits(std::string& out, std::uint32_t bits, int count) {
    for (int i = 0; i < count; ++i) {
        out += base64_digits[bits >> (18 - 6 * i) & 63];
    }
}

/// Decodes four digits. The last ones may be padding.
bool resolve_quad(std::string_view quad, std::size_t padding, std::string& out) {
    std::uint32_t bits = 0;
    for (std::size_t i = 0; i < 4; ++i) {
        const int value = i >= 4 - padding ? 0 : base64_value(quad[i]);
        if (value < 0) {
            return false;
        }
        bits = bits << 6 | static_cast<std::uint32_t>(value);
    }
    const std::size_t count = 3 - padding;
    for (std::size_t i = 0; i < count; ++i) {
        out += static_cast<char>(bits >> (16 - 8 * i) & 0xFF);
    }
    const std::uint32_t unused = (std::uint32_t{1} << 8 * padding) - 1;
    return (bits & unused) == 0; // unused bits are 0, so that no two texts decode to the same bytes
}

} // namespace

void append_base64(std::string& out, std::string_view bytes) {
    const auto byte = [bytes](std::size_t i) {
        return i < bytes.size() ? std::uint32_t{static_cast<unsigned char>(bytes[i])} : 0u;
    };
    for (std::size_t i = 0; i < bytes.size(); i += 3) {
        const std::uint32_t bits = byte(i) << 16 | byte(i + 1) << 8 | byte(i + 2);
        const std::size_t left = bytes.size() - i;
        put_digits(out, bits, left > 2 ? 4 : static_cast<int>(left) + 1);
        out.append(left > 2 ? 0 : 3 - left, '=');
    }
}

bool resolve_base64(std::string_view text, std::string& out) {
    if (text.size() % 4 != 0) {
        return false;
    }
    out.reserve(out.size() + text.size() / 4 * 3);
    for (std::size_t i = 0; i < text.size(); i += 4) {
        const bool is_last = i + 4 == text.size();
        const std::size_t padding = !is_last || text[i + 3] != '=' ? 0 : text[i + 2] == '=' ? 2 : 1;
        if (!resolve_quad(text.substr(i, 4), padding, out)) {
            return false;
        }
    }
    return true;
}

} // namespace bk_parser
