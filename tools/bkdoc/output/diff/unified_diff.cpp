#include "output/diff/unified_diff.h"

#include "output/diff/line_difference.h"

#include <algorithm>
#include <vector>

namespace bkdoc {

namespace {

constexpr std::size_t context = 3; // lines

using Lines = std::vector<std::string_view>;

void write_line(char mark, std::string_view line, Output& out) {
    const Tone tone = mark == '-' ? Tone::error : mark == '+' ? Tone::text : Tone::plain;
    const bool has_end = line.ends_with('\n');
    line.remove_suffix(has_end ? 1 : 0);
    out.paint(tone, std::string(1, mark) + std::string(line));
    out << "\n" << (has_end ? "" : "\\ No newline at end of file\n");
}

/// "12,3", as a hunk's head names lines; "11,0" stands behind line 11.
std::string range_text(std::size_t begin, std::size_t end) {
    const std::size_t count = end - begin;
    const std::string first = std::to_string(count == 0 ? begin : begin + 1);
    return count == 1 ? first : first + "," + std::to_string(count);
}

/// Changes whose surroundings meet are one hunk.
void write_hunk(const Lines& before, const Lines& after, const std::vector<LineChange>& changes,
                std::size_t first, std::size_t last, Output& out) {
    const std::size_t lead = std::min(context, changes[first].old_begin);
    const std::size_t old_begin = changes[first].old_begin - lead;
    const std::size_t old_end = std::min(changes[last].old_end + context, before.size());
    const std::size_t new_begin = changes[first].new_begin - lead;
    const std::size_t new_end = changes[last].new_end + (old_end - changes[last].old_end);
    out.paint(Tone::name,
              "@@ -" + range_text(old_begin, old_end) + " +" + range_text(new_begin, new_end) + " @@");
    out << "\n";
    std::size_t at = old_begin;
    const auto write_same = [&](std::size_t end) {
        for (; at < end; ++at) {
            write_line(' ', before[at], out);
        }
    };
    for (std::size_t i = first; i <= last; ++i) {
        write_same(changes[i].old_begin);
        for (; at < changes[i].old_end; ++at) {
            write_line('-', before[at], out);
        }
        for (std::size_t line = changes[i].new_begin; line < changes[i].new_end; ++line) {
            write_line('+', after[line], out);
        }
    }
    write_same(old_end);
}

} // namespace

void write_unified_diff(std::string_view before, std::string_view after, const std::string& old_name,
                        const std::string& new_name, Output& out) {
    if (before == after) {
        return;
    }
    const Lines old_lines = lines_of(before);
    const Lines new_lines = lines_of(after);
    const std::vector<LineChange> changes = line_changes(old_lines, new_lines);
    out.paint(Tone::strong, "--- " + old_name);
    out << "\n";
    out.paint(Tone::strong, "+++ " + new_name);
    out << "\n";
    for (std::size_t first = 0; first < changes.size();) {
        std::size_t last = first;
        while (last + 1 < changes.size() &&
               changes[last + 1].old_begin - changes[last].old_end <= 2 * context) {
            ++last;
        }
        write_hunk(old_lines, new_lines, changes, first, last, out);
        first = last + 1;
    }
}

} // namespace bkdoc
