#include "document/save/edits/layout_lines_impl.h"

#include <algorithm>

namespace bk_parser {

namespace {

constexpr std::size_t deepest_unit = 8;

bool is_blank_in_line(char c) noexcept {
    return c == ' ' || c == '\t' || c == '\r';
}

/// A byte order mark is not part of the line.
std::size_t first_byte(std::string_view text) noexcept {
    constexpr std::string_view byte_order_mark = "\xEF\xBB\xBF";
    return text.starts_with(byte_order_mark) ? byte_order_mark.size() : 0;
}

} // namespace

std::size_t line_begin(std::string_view text, std::size_t at) noexcept {
    const std::size_t feed = at == 0 ? std::string_view::npos : text.rfind('\n', at - 1);
    return feed == std::string_view::npos ? std::min(at, first_byte(text)) : feed + 1;
}

std::size_t next_line(std::string_view text, std::size_t at) noexcept {
    const std::size_t feed = text.find('\n', at);
    return feed == std::string_view::npos ? text.size() : feed + 1;
}

std::size_t trimmed_back(std::string_view text, std::size_t at) noexcept {
    while (at != 0 && is_blank_in_line(text[at - 1])) {
        --at;
    }
    return at;
}

std::size_t skip_blanks(std::string_view text, std::size_t at) noexcept {
    while (at != text.size() && is_blank_in_line(text[at])) {
        ++at;
    }
    return at;
}

bool begins_line(std::string_view text, std::size_t at) noexcept {
    const std::size_t begin = trimmed_back(text, at);
    return begin <= first_byte(text) || text[begin - 1] == '\n';
}

bool ends_line(std::string_view text, std::size_t at) noexcept {
    const std::string_view rest = text.substr(skip_blanks(text, at));
    return rest.empty() || rest.front() == '\n' || rest.starts_with("//");
}

bool is_at_blank_line(std::string_view text, std::size_t at) noexcept {
    return text.substr(skip_blanks(text, at)).starts_with('\n');
}

bool is_behind_blank_line(std::string_view text, std::size_t at) noexcept {
    return at != 0 && text[at - 1] == '\n' && begins_line(text, at - 1);
}

std::string_view indent_of(std::string_view text, std::size_t at) noexcept {
    const std::size_t begin = line_begin(text, at);
    std::size_t end = begin;
    while (end != text.size() && (text[end] == ' ' || text[end] == '\t')) {
        ++end;
    }
    return text.substr(begin, std::min(end, std::max(at, begin)) - begin);
}

std::size_t comments_above(std::string_view text, std::size_t at) noexcept {
    const std::string_view indent = indent_of(text, at);
    std::size_t line = line_begin(text, at);
    while (line > first_byte(text)) {
        const std::size_t above = line_begin(text, line - 1);
        const std::string_view rest = text.substr(above);
        if (!rest.starts_with(indent) || !rest.substr(indent.size()).starts_with("//")) {
            break;
        }
        line = above;
    }
    return line;
}

std::string indent_unit(std::string_view text) {
    for (std::size_t line = 0; line != text.size(); line = next_line(text, line)) {
        const std::size_t end = skip_blanks(text, line);
        if (end == line || end == text.size() || text[end] == '\n') {
            continue;
        }
        if (text[line] == '\t') {
            return "\t";
        }
        return std::string(std::min(end - line, deepest_unit), ' ');
    }
    return "    ";
}

std::string_view line_break(std::string_view text, std::size_t at) noexcept {
    std::size_t feed = text.find('\n', at);
    if (feed == std::string_view::npos) {
        feed = text.find('\n');
    }
    const bool has_return = feed != std::string_view::npos && feed != 0 && text[feed - 1] == '\r';
    return has_return ? "\r\n" : "\n";
}

LineRange removal_of(std::string_view text, std::size_t begin, std::size_t end) noexcept {
    const bool is_first = begins_line(text, begin);
    if (!is_first) {
        return {trimmed_back(text, begin), end, false};
    }
    if (!ends_line(text, end)) {
        return {begin, skip_blanks(text, end), false};
    }
    return {line_begin(text, begin), next_line(text, end), true};
}

std::string indented_anew(std::string_view lines, std::string_view from, std::string_view to) {
    std::string result;
    for (bool is_first = true; !lines.empty(); is_first = false) {
        const std::size_t end = next_line(lines, 0);
        std::string_view line = lines.substr(0, end);
        lines.remove_prefix(end);
        const bool is_empty = line.find_first_not_of(" \t\r\n") == std::string_view::npos;
        if (!is_first && line.starts_with(from)) {
            line.remove_prefix(from.size());
            result += is_empty ? std::string_view() : to;
        } else if (is_first) {
            result += to;
        }
        result += line;
    }
    return result;
}

} // namespace bk_parser
