#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace bkdoc {

struct PatternOptions {
    bool is_fixed = false; // a text, not an expression
    bool ignores_case = false;
};

/// Characters by their code points, ends included. What is no UTF-8 stands behind the last code point.
struct CharacterRange {
    char32_t first;
    char32_t last;
};
using CharacterSet = std::vector<CharacterRange>;

inline constexpr char32_t last_character = 0x10FFFF;
inline constexpr char32_t stray_bytes = 0x110000; // and the byte

/// One step of a pattern. Jumps are relative, so that a part of a program can be repeated.
struct PatternStep {
    enum class Kind : std::uint8_t { character, set, fork, jump, begin, end, boundary, no_boundary, found };
    Kind kind = Kind::found;
    char32_t character = 0; // or the number of a set
    std::int32_t first = 1; // of a fork, and of a jump
    std::int32_t second = 1;
};

struct PatternProgram {
    std::vector<PatternStep> steps;
    std::vector<CharacterSet> sets;
};

struct PatternFault {
    std::string message; // empty when there is none
    std::size_t offset = 0;
};

/// A pattern may have so many steps, repetitions written out, and so many nested parentheses.
inline constexpr std::size_t most_pattern_steps = 5000;
inline constexpr std::size_t most_pattern_depth = 100;

PatternFault parse_pattern(std::string_view text, const PatternOptions& options, PatternProgram& program);

/// The character at `position`, which is moved behind it.
char32_t next_character(std::string_view text, std::size_t& position) noexcept;
bool is_word_character(char32_t character) noexcept;

} // namespace bkdoc
