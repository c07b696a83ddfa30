#include "core/core_memory.h"
#include "core/text/core_hexadecimal_impl.h"
#include "parser/model/parser_value_impl.h"

#include <cstdint>
#include <cstring>

/// The binary-data literal of the text syntax: "0x", the bytes, and the sum of all bytes as four more bytes, the
/// least significant first, every byte as two upper-case hexadecimal digits.
namespace bk {

namespace {

constexpr std::size_t prefix_length = 2;
constexpr std::size_t checksum_length = 8;

/// The byte of two digits; 0 when either is none.
unsigned char decode_pair(const char* pair) noexcept {
    const int high = hexadecimal_value(pair[0]);
    const int low = hexadecimal_value(pair[1]);
    return (high | low) < 0 ? 0 : static_cast<unsigned char>(high * 16 + low);
}

void put_byte(TextBuffer& out, unsigned char byte) {
    char pair[2];
    put_hexadecimal(pair, byte);
    out.put(std::string_view(pair, sizeof(pair)));
}

} // namespace

unsigned char* copy_bytes(const void* data, unsigned int size) {
    auto* const bytes = static_cast<unsigned char*>(CoreMemory::allocate(size));
    if (data != nullptr) {
        std::memcpy(bytes, data, size);
    } else {
        std::memset(bytes, 0, size);
    }
    return bytes;
}

void* decode_binary_literal(std::string_view literal, unsigned int& size) {
    size = 0;
    if (literal.size() <= prefix_length + checksum_length || literal.size() % 2 != 0) {
        return nullptr;
    }
    const std::size_t count = (literal.size() - prefix_length - checksum_length) / 2;
    auto* bytes = static_cast<unsigned char*>(CoreMemory::allocate(count));
    for (std::size_t i = 0; i < count; ++i) {
        bytes[i] = decode_pair(literal.data() + prefix_length + 2 * i);
    }
    size = static_cast<unsigned int>(count);
    return bytes;
}

void put_binary_literal(TextBuffer& out, std::string_view bytes) {
    out.put("0x");
    std::uint32_t sum = 0;
    for (const char character : bytes) {
        const auto byte = static_cast<unsigned char>(character);
        sum += byte;
        put_byte(out, byte);
    }
    for (int shift = 0; shift < 32; shift += 8) {
        put_byte(out, static_cast<unsigned char>(sum >> shift));
    }
}

} // namespace bk
