#include "output/diff/diff_text.h"

#include <algorithm>

namespace bkdoc {

namespace {

Tone tone_of_line(std::string_view line) noexcept {
    if (line.starts_with("--- ") || line.starts_with("+++ ")) {
        return Tone::strong;
    }
    switch (line.front()) {
    case '@':
        return Tone::dim;
    case '-':
        return Tone::error;
    case '+':
        return Tone::text;
    default:
        return Tone::plain;
    }
}

} // namespace

void write_diff(std::string_view diff, Output& out) {
    while (!diff.empty()) {
        const std::size_t end = std::min(diff.find('\n'), diff.size());
        const std::string_view line = diff.substr(0, end);
        if (!line.empty()) {
            out.paint(tone_of_line(line), line);
        }
        out << "\n";
        diff.remove_prefix(std::min(end + 1, diff.size()));
    }
}

} // namespace bkdoc
