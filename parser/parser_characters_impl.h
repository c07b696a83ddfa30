#pragma once

#include <array>
#include <cstdint>

/// The one table of character classes. Bytes from 0x80 up belong to no class: they are ordinary word characters.
namespace bk {

enum CharacterClass : std::uint8_t {
    CHAR_BLANK = 1,      // space, tab, line feed, carriage return
    CHAR_LINE_BREAK = 2, // line feed, carriage return
    CHAR_DELIMITER = 4,  // a word of its own
    CHAR_QUOTE = 8,
    CHAR_NAME_START = 16, // ASCII letter or '_'
    CHAR_DIGIT = 32,
    CHAR_HEX_DIGIT = 64,
    CHAR_DIRECTIVE = 128, // what the preprocessor stops at: '#', '"', '\\', '/', '0'

    CHAR_NAME = CHAR_NAME_START | CHAR_DIGIT,
    CHAR_ENDS_WORD = CHAR_BLANK | CHAR_DELIMITER | CHAR_QUOTE
};

constexpr std::array<std::uint8_t, 256> make_character_table() {
    std::array<std::uint8_t, 256> table{};
    const auto mark = [&table](const char* characters, unsigned classes) {
        for (; *characters != '\0'; ++characters) {
            auto& entry = table[static_cast<unsigned char>(*characters)];
            entry = static_cast<std::uint8_t>(entry | classes);
        }
    };
    mark(" \t\n\r", CHAR_BLANK);
    mark("\n\r", CHAR_LINE_BREAK);
    mark("{}(),:=", CHAR_DELIMITER);
    mark("\"", CHAR_QUOTE);
    mark("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz_", CHAR_NAME_START);
    mark("0123456789", CHAR_DIGIT | CHAR_HEX_DIGIT);
    mark("ABCDEFabcdef", CHAR_HEX_DIGIT);
    mark("#\"\\/0", CHAR_DIRECTIVE);
    return table;
}

inline constexpr std::array<std::uint8_t, 256> character_table = make_character_table();

constexpr bool is_char(char character, unsigned classes) noexcept {
    return (character_table[static_cast<unsigned char>(character)] & classes) != 0;
}

} // namespace bk
