#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace bkdoc {

struct PatternOptions {
    bool is_fixed = false; // search for the text itself, not as an expression
    bool ignores_case = false;
};

/// A range of code points, both ends included. Bytes that are not UTF-8 have numbers above the last code point.
struct CharacterRange {
    char32_t first;
    char32_t last;
};
using CharacterSet = std::vector<CharacterRange>;

inline constexpr char32_t last_character = 0x10FFFF;
inline constexpr char32_t stray_bytes = 0x110000; // plus the byte

/// One step of a pattern. Jumps are relative, so that a part of a program can be repeated.
struct PatternStep {
    enum class Kind : std::uint8_t { character, set, fork, jump, begin, end, boundary, no_boundary, found };
    Kind kind = Kind::found;
    char32_t character = 0; // or the index of a set
    std::int32_t first = 1; // target of a jump, first target of a fork
    std::int32_t second = 1;
};

struct PatternProgram {
    std::vector<PatternStep> steps;
    std::vector<CharacterSet> sets;
};

struct PatternFault {
    std::string message; // empty without an error
    std::size_t offset = 0;
};

/// Limits of a pattern: steps, with repetitions written out, and nested parentheses.
inline constexpr std::size_t most_pattern_steps = 5000;
inline constexpr std::size_t most_pattern_depth = 100;

PatternFault parse_pattern(std::string_view text, const PatternOptions& options, PatternProgram& program);

/// Returns the character at `position`, and moves `position` after it.
char32_t next_character(std::string_view text, std::size_t& position) noexcept;
bool is_word_character(char32_t character) noexcept;

} // namespace bkdoc
