#include "pattern/pattern.h"

#include "output/display/text_display.h"

#include <algorithm>

namespace bkdoc {

namespace {

constexpr std::string_view special = "\\.[](){}*+?|^$";

bool contains(const CharacterSet& set, char32_t character) noexcept {
    return std::any_of(set.begin(), set.end(), [character](const CharacterRange& range) {
        return character >= range.first && character <= range.last;
    });
}

bool takes(const PatternProgram& program, const PatternStep& step, char32_t character) noexcept {
    return step.kind == PatternStep::Kind::character ? step.character == character
           : step.kind == PatternStep::Kind::set     ? contains(program.sets[step.character], character)
                                                     : false;
}

std::size_t moved(std::size_t place, std::int32_t by) noexcept {
    return static_cast<std::size_t>(static_cast<std::ptrdiff_t>(place) + by);
}

} // namespace

char32_t next_character(std::string_view text, std::size_t& position) noexcept {
    const auto byte = [text](std::size_t at) { return static_cast<unsigned char>(text[at]); };
    const std::size_t length = utf8_length(text, position);
    if (length == 0) {
        return stray_bytes + byte(position++);
    }
    char32_t character = length == 1 ? byte(position) : byte(position) & (0x7Fu >> length);
    for (std::size_t i = 1; i < length; ++i) {
        character = character << 6 | (byte(position + i) & 0x3Fu);
    }
    position += length;
    return character;
}

bool is_word_character(char32_t character) noexcept {
    return (character >= U'a' && character <= U'z') || (character >= U'A' && character <= U'Z') ||
           (character >= U'0' && character <= U'9') || character == U'_' || character >= 0x80;
}

Pattern::Pattern(std::string_view text, const PatternOptions& options) {
    is_literal_ =
        !options.ignores_case && (options.is_fixed || text.find_first_of(special) == std::string_view::npos);
    if (is_literal_) {
        literal_ = text;
        return;
    }
    PatternFault fault = parse_pattern(text, options, program_);
    error_ = std::move(fault.message);
    error_offset_ = fault.offset;
    now_.prepare(program_.steps.size());
    next_.prepare(program_.steps.size());
}

bool Pattern::fits(std::string_view text) {
    return error_.empty() && (is_literal_ ? text.find(literal_) != std::string_view::npos : run(text));
}

bool Pattern::run(std::string_view text) {
    bool is_word_before = false;
    now_.clear();
    for (std::size_t at = 0;;) {
        const bool is_end = at == text.size();
        const std::size_t begin = at;
        const char32_t character = is_end ? 0 : next_character(text, at);
        const bool is_word = !is_end && is_word_character(character);
        const Around around{begin == 0, is_end, is_word_before, is_word};
        // The assertions that follow (^ $ \b \B) look at the characters around this place. The pattern may begin anywhere.
        next_.clear();
        for (const std::size_t place : now_.list()) {
            if (follow(place, around, next_)) {
                return true;
            }
        }
        if (follow(0, around, next_)) {
            return true;
        }
        if (is_end) {
            return false;
        }
        now_.clear();
        for (const std::size_t place : next_.list()) {
            if (takes(program_, program_.steps[place], character)) {
                now_.add(place + 1);
            }
        }
        is_word_before = is_word;
    }
}

/// Follows forks, jumps and assertions from `start`, and adds the steps that wait for a character. Returns true when the
/// pattern is found.
bool Pattern::follow(std::size_t start, const Around& around, Places& places) {
    pending_.assign(1, start);
    while (!pending_.empty()) {
        const std::size_t place = pending_.back();
        pending_.pop_back();
        if (!places.add(place)) {
            continue;
        }
        const PatternStep& step = program_.steps[place];
        switch (step.kind) {
        case PatternStep::Kind::found:
            return true;
        case PatternStep::Kind::fork:
            pending_.push_back(moved(place, step.second));
            pending_.push_back(moved(place, step.first));
            break;
        case PatternStep::Kind::jump:
            pending_.push_back(moved(place, step.first));
            break;
        default: {
            const bool is_at_boundary = around.is_word_before != around.is_word_after;
            const bool goes_on = (step.kind == PatternStep::Kind::begin && around.is_begin) ||
                                 (step.kind == PatternStep::Kind::end && around.is_end) ||
                                 (step.kind == PatternStep::Kind::boundary && is_at_boundary) ||
                                 (step.kind == PatternStep::Kind::no_boundary && !is_at_boundary);
            if (goes_on) {
                pending_.push_back(place + 1);
            }
        }
        }
    }
    return false;
}

} // namespace bkdoc
