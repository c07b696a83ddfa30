#pragma once

#include "core/core_containers.h"
#include "core/core_string.h"

#include <cctype>
#include <cstdint>
#include <string>
#include <string_view>

/// Bytes as the library takes them.
inline CoreVector<char> buffer(std::string_view bytes) {
    CoreVector<char> result;
    result.add_range(bytes.data(), static_cast<unsigned int>(bytes.size()));
    return result;
}
inline CoreArray<unsigned char> byte_array(std::string_view bytes) {
    CoreArray<unsigned char> result(static_cast<unsigned int>(bytes.size()));
    for (unsigned int i = 0; i < result.get_count(); ++i) {
        result[i] = static_cast<unsigned char>(bytes[i]);
    }
    return result;
}

/// Bytes as the standard library takes them.
inline std::string bytes_of(const CoreVector<char>& bytes) {
    return std::string(bytes.begin(), bytes.end());
}
inline std::string bytes_of(const CoreArray<unsigned char>& bytes) {
    return std::string(bytes.begin(), bytes.end());
}

/// A number in `width` bytes, the lowest first. Uses arithmetic, not the library.
inline std::string little(core_uint64 number, unsigned int width) {
    std::string result;
    for (unsigned int i = 0; i < width; ++i) {
        result += static_cast<char>(static_cast<unsigned char>(number % 256));
        number /= 256;
    }
    return result;
}
inline std::string size_field(core_uint64 number) {
    return little(number, 8);
}

/// "0F 80": readable in the message of a failed comparison.
inline std::string hex(std::string_view bytes) {
    static constexpr std::string_view digits = "0123456789ABCDEF";
    std::string result;
    for (const char byte : bytes) {
        const unsigned int code = static_cast<unsigned char>(byte);
        result += result.empty() ? "" : " ";
        result += digits[code / 16];
        result += digits[code % 16];
    }
    return result;
}
inline std::string hex(const CoreVector<char>& bytes) {
    return hex(bytes_of(bytes));
}

/// "0F80" as the library's hexadecimal forms have it.
inline std::string dense_hex(std::string_view bytes) {
    std::string result = hex(bytes);
    std::erase(result, ' ');
    return result;
}

/// The bytes that hexadecimal digits spell; blanks are skipped.
inline std::string unhex(std::string_view text) {
    std::string digits(text);
    std::erase(digits, ' ');
    std::string result;
    for (std::size_t i = 0; i + 1 < digits.size(); i += 2) {
        result += static_cast<char>(std::stoi(digits.substr(i, 2), nullptr, 16));
    }
    return result;
}
