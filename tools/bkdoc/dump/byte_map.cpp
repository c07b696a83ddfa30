#include "dump/byte_map.h"

#include "output/display/text_display.h"

#include <algorithm>
#include <utility>

namespace bkdoc {

namespace {

constexpr std::size_t shown_bytes = 10;
constexpr std::size_t offset_digits = 8;
constexpr std::size_t bytes_width = shown_bytes * 3 + 3;
constexpr std::size_t field_width = 20; // including its indentation

std::string hex_number(std::size_t number) {
    std::string result;
    for (std::size_t i = offset_digits; i > 0; --i) {
        result += hexadecimal_digits[number >> (4 * (i - 1)) & 15];
    }
    return result;
}

std::string hex_byte(char byte) {
    const unsigned code = static_cast<unsigned char>(byte);
    return {hexadecimal_digits[code >> 4], hexadecimal_digits[code & 15]};
}

std::string hex_bytes(std::string_view bytes) {
    std::string result;
    for (const char byte : bytes.substr(0, shown_bytes)) {
        result += hex_byte(byte) + " ";
    }
    if (bytes.size() > shown_bytes) {
        result += ellipsis;
    }
    return result;
}

std::string indented(std::size_t depth, std::string_view field) {
    const std::string indent =
        depth <= indented_levels
            ? std::string(2 * depth, ' ')
            : std::string(2 * indented_levels, ' ') + std::string(ellipsis) + std::to_string(depth) + " ";
    return indent + std::string(field);
}

std::string padded(std::string text, std::size_t width) {
    const std::size_t used = count_characters(text);
    return text.append(std::max(width, used + 1) - used, ' ');
}

} // namespace

std::string shown_byte(char byte) {
    return "0x" + hex_byte(byte);
}

void ByteMapWriter::heading() {
    out_.paint(Tone::dim, padded("offset", offset_digits + 2) + padded("bytes", bytes_width) +
                              padded("field", field_width) + "meaning");
    out_ << "\n";
}

void ByteMapWriter::row(LittleCursor& cursor, std::size_t size, std::size_t depth, std::string_view field,
                        std::string_view meaning, Tone tone) {
    const std::size_t offset = cursor.position();
    line(offset, cursor.take(size), indented(depth, field), meaning, tone);
}

void ByteMapWriter::unexplained(LittleCursor& cursor, std::size_t size, std::string_view where,
                                std::string reason) {
    const std::size_t offset = cursor.position();
    const std::string_view bytes = cursor.take(size);
    line(offset, bytes, "?",
         bytes.empty() ? std::string(where) + " ends here"
                       : counted(bytes.size(), "byte", "bytes") + " not explained",
         Tone::error);
    unexplained_.push_back({offset, std::move(reason)});
}

void ByteMapWriter::line(std::size_t offset, std::string_view bytes, std::string_view field,
                         std::string_view meaning, Tone tone) {
    out_.paint(Tone::dim, hex_number(offset));
    out_ << "  " << padded(hex_bytes(bytes), bytes_width)
         << (meaning.empty() ? std::string(field) : padded(std::string(field), field_width));
    out_.paint(tone, meaning);
    out_ << "\n";
}

void ByteMapWriter::remark(std::string_view text) {
    out_ << std::string(offset_digits + 2 + bytes_width + field_width, ' ');
    out_.paint(Tone::dim, text);
    out_ << "\n";
}

} // namespace bkdoc
