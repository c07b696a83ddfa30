#include "output/problems/snippet.h"

#include "output/display/text_display.h"

#include <algorithm>
#include <string>

namespace bkdoc {

namespace {

constexpr std::size_t shown_before = 100; // bytes of a line
constexpr std::size_t shown_after = 60;

/// The visible part of a line.
struct Window {
    std::size_t begin;
    std::size_t end;
    bool cut_before;
    bool cut_after;
};

Window window_of(std::string_view line, std::size_t offset) {
    Window window{0, line.size(), false, false};
    if (offset > shown_before) {
        window.begin = character_start(line, offset - shown_before);
        window.cut_before = true;
    }
    if (line.size() > offset + shown_after) {
        window.end = character_start(line, offset + shown_after);
        window.cut_after = true;
    }
    return window;
}

template <class Function>
void for_each_character(std::string_view text, Function function) {
    for (std::size_t i = 0; i < text.size();) {
        const std::size_t length = std::max<std::size_t>(utf8_length(text, i), 1);
        function(text.substr(i, length));
        i += length;
    }
}

// Writes one column for each character, so that the caret's line aligns.
std::string shown_line(std::string_view text) {
    std::string line;
    for_each_character(text, [&line](std::string_view character) {
        const bool as_it_is = character == "\t" || is_showable(character);
        line += as_it_is ? character : std::string_view("?");
    });
    return line;
}

std::string space_under(std::string_view text) {
    std::string space;
    for_each_character(text,
                       [&space](std::string_view character) { space += character == "\t" ? '\t' : ' '; });
    return space;
}

std::string mark_under(std::string_view text) {
    const std::size_t count = count_characters(text);
    return "^" + std::string(count > 1 ? count - 1 : 0, '~');
}

} // namespace

void write_snippet(const bk_parser::Problem& problem, Output& out) {
    const std::string_view line = problem.source_line;
    if (problem.line == 0 || line.empty()) {
        return;
    }
    const std::size_t offset = std::min(
        std::max(problem.offset, problem.source_line_offset) - problem.source_line_offset, line.size());
    const Window window = window_of(line, offset);
    const std::size_t begin =
        std::clamp(offset, window.begin, window.end); // an error at the line end lies past the text
    const std::size_t end = std::clamp(offset + problem.length, begin, window.end);

    out << (window.cut_before ? ellipsis : "")
        << shown_line(line.substr(window.begin, window.end - window.begin))
        << (window.cut_after ? ellipsis : "") << "\n"
        << (window.cut_before ? " " : "") << space_under(line.substr(window.begin, begin - window.begin));
    out.paint(Tone::caret, mark_under(line.substr(begin, end - begin)));
    out << "\n";
}

} // namespace bkdoc
