#pragma once

namespace bk {

/// Writes a byte as two upper-case hexadecimal digits, and returns the position after them.
inline char* put_hexadecimal(char* out, unsigned char byte) noexcept {
    constexpr char digits[] = "0123456789ABCDEF";
    *out++ = digits[byte / 16];
    *out++ = digits[byte % 16];
    return out;
}

/// The value of an upper-case hexadecimal digit; negative for any other character.
constexpr int hexadecimal_value(char digit) noexcept {
    if (digit >= '0' && digit <= '9') {
        return digit - '0';
    }
    return digit >= 'A' && digit <= 'F' ? digit - 'A' + 10 : -1;
}

} // namespace bk
