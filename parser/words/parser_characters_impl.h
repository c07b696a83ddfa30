#pragma once

#include <array>
#include <cstdint>

/// The one table of character classes. Bytes from 0x80 up are ordinary word characters.
namespace bk {

enum CharacterClass : std::uint16_t {
    CHAR_BLANK = 1,      // space, tab, line feed, carriage return
    CHAR_LINE_BREAK = 2, // line feed, carriage return
    CHAR_DELIMITER = 4,  // a word of its own
    CHAR_QUOTE = 8,
    CHAR_NAME_START = 16, // ASCII letter or '_'
    CHAR_DIGIT = 32,
    CHAR_HEX_DIGIT = 64,
    CHAR_NOT_IN_NAME = 128, // neither a letter, nor a digit, nor '_'
    CHAR_DOUBLE_MARK = 256, // '.' and 'e': a number with one of them is no int
    CHAR_DIRECTIVE = 512,   // what the preprocessor looks at: '#', '"', '/', '0'
    CHAR_TERMINATOR = 1024, // NUL, which follows every text and may be inside it, too
    CHAR_ESCAPED = 2048,    // what a string spells with a backslash

    CHAR_NAME = CHAR_NAME_START | CHAR_DIGIT,
    CHAR_ENDS_RUN = CHAR_BLANK | CHAR_DELIMITER | CHAR_QUOTE | CHAR_TERMINATOR
};

constexpr std::array<std::uint16_t, 256> make_character_table() {
    std::array<std::uint16_t, 256> table{};
    const auto mark = [&table](const char* characters, unsigned classes) {
        for (; *characters != '\0'; ++characters) {
            auto& entry = table[static_cast<unsigned char>(*characters)];
            entry = static_cast<std::uint16_t>(entry | classes);
        }
    };
    mark(" \t\n\r", CHAR_BLANK);
    mark("\n\r", CHAR_LINE_BREAK);
    mark("{}(),:=", CHAR_DELIMITER);
    mark("\"", CHAR_QUOTE);
    mark("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz_", CHAR_NAME_START);
    mark("0123456789", CHAR_DIGIT | CHAR_HEX_DIGIT);
    mark("ABCDEFabcdef", CHAR_HEX_DIGIT);
    mark(".e", CHAR_DOUBLE_MARK);
    mark("#\"/0", CHAR_DIRECTIVE);
    mark("\t\n\r\"'\\", CHAR_ESCAPED);
    table[0] = CHAR_TERMINATOR;
    for (std::uint16_t& entry : table) {
        if ((entry & CHAR_NAME) == 0) {
            entry = static_cast<std::uint16_t>(entry | CHAR_NOT_IN_NAME);
        }
    }
    return table;
}

inline constexpr std::array<std::uint16_t, 256> character_table = make_character_table();

constexpr unsigned int classes_of(char character) noexcept {
    return character_table[static_cast<unsigned char>(character)];
}

constexpr bool is_char(char character, unsigned int classes) noexcept {
    return (classes_of(character) & classes) != 0;
}

} // namespace bk
