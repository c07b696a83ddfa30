#include "document/problems/faults/fault_story_impl.h"
#include "document/problems/list/problem_codes_impl.h"

#include <algorithm>

/// Faults of lines that are no part of the document.
namespace bk_parser {

namespace {

constexpr std::size_t mark_length = 7;

/// Which mark of a merge conflict a line begins with: '<', '|', '=', '>', or 0.
char conflict_mark(std::string_view line) noexcept {
    if (line.size() < mark_length || (line.size() > mark_length && line[mark_length] != ' ' &&
                                      line[mark_length] != '\r' && line[mark_length] != '\n')) {
        return 0;
    }
    const char mark = line[0];
    const bool is_mark = mark == '<' || mark == '|' || mark == '=' || mark == '>';
    return is_mark && line.substr(0, mark_length).find_first_not_of(mark) == std::string_view::npos ? mark
                                                                                                    : '\0';
}

/// Where the line begins that ends the conflict. The size of the text when another conflict begins before, or none ends it.
std::size_t find_conflict_end(std::string_view text, std::size_t from) noexcept {
    for (std::size_t at = text.find('\n', from); at != std::string_view::npos; at = text.find('\n', at)) {
        ++at;
        const char mark = conflict_mark(text.substr(at));
        if (mark == '>') {
            return at;
        }
        if (mark == '<') {
            break;
        }
    }
    return text.size();
}

} // namespace

/// Handles a fault on the line of a conflict's mark. Reports the conflict at its first mark.
bool FaultStory::tell_conflict(const Spot& spot) {
    const SourceText& source = sources_.file_of(spot).text;
    const std::size_t begin = source.line_begin(spot.offset);
    const char mark = conflict_mark(source.get_text().substr(begin));
    if (mark == 0) {
        return false;
    }
    const std::size_t line_end = source.line_end(spot.offset);
    const bool is_inside =
        spot.inclusion == conflict_.inclusion && begin >= conflict_.begin && begin < conflict_.end;
    if (mark == '<') {
        const std::size_t last = find_conflict_end(source.get_text(), begin);
        const std::size_t first_line = source.place_of(begin).line;
        std::string lines = ", line " + std::to_string(first_line);
        conflict_ = {spot.inclusion, begin, line_end, {}};
        if (last != source.get_text().size()) {
            conflict_.end = source.line_end(last);
            lines =
                ", lines " + std::to_string(first_line) + " to " + std::to_string(source.place_of(last).line);
        }
        add(codes::merge_conflict, [&] { return "unresolved merge conflict" + lines; },
            {spot.inclusion, begin, line_end - begin, spot.expanded});
    } else if (!is_inside) {
        if (mark == '=' || mark == '|') { // these alone are no conflict
            return false;
        }
        add(codes::merge_conflict,
            [&] { return "unresolved merge conflict, line " + std::to_string(source.place_of(begin).line); },
            {spot.inclusion, begin, line_end - begin, spot.expanded});
    }
    cover(spot, begin, line_end);
    return true;
}

/// After an unclosed quote the scanner takes comments for strings, and strings for code that may have comments.
bool FaultStory::tell_comment_as_text(const Spot& spot) {
    const std::size_t file = sources_.file_of_inclusion(spot.inclusion);
    const LineReader::State state = lines_.state_at(spot);
    if (state == LineReader::State::comment) {
        if (!has_open_quote_[file]) {
            has_open_quote_[file] = true;
            add(codes::string_left_open, "this comment is read as text: a quote before it is left open",
                spot);
        }
        cover_line(spot);
        return true;
    }
    if (state == LineReader::State::string && has_open_quote_[file]) {
        const std::size_t end = sources_.file_of(spot).text.line_end(spot.offset);
        const bool is_closed =
            end != spot.offset && lines_.state_at({spot.inclusion, end, 0, 0}) != LineReader::State::string &&
            text_of(spot).substr(spot.offset, end - spot.offset).find("//") != std::string_view::npos;
        if (is_closed) {
            cover_line(spot);
            return true;
        }
    }
    return false;
}

} // namespace bk_parser
