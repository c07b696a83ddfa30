#include "document/save/edits/layout_edits_impl.h"
#include "document/save/edits/layout_lines_impl.h"
#include "parser/model/parser_entry_impl.h"
#include "parser/words/parser_word_rules_impl.h"

#include <algorithm>

// Edits the values, except the group, of an entry that stays. Equal values at the beginning and the end stay. In between, words
// are replaced, and the rest is removed or inserted.

namespace bk_parser {

bool LayoutEdits::edit_values(const OldGroup& group, const OldEntry& old, const ParserEntry& now,
                              std::uint32_t count) {
    if (old.value_count == 0) {
        return count == 0 || fill_empty(old, now, count);
    }
    const auto is_kept = [&](std::uint32_t from, std::uint32_t to) {
        return is_same(value_of(group, old, from), bk::EntryAccess::value(now, to));
    };
    const std::uint32_t least = std::min(old.value_count, count);
    std::uint32_t head = 0;
    while (head < least && is_kept(head, head)) {
        ++head;
    }
    std::uint32_t tail = 0;
    while (tail < least - head && is_kept(old.value_count - 1 - tail, count - 1 - tail)) {
        ++tail;
    }
    const std::uint32_t replaced = least - tail;
    for (std::uint32_t i = head; i < old.value_count - tail; ++i) {
        if ((i >= replaced || !is_kept(i, i)) && is_cut(value_of(group, old, i))) {
            return refuse_cut(now);
        }
    }
    for (std::uint32_t i = head; i < replaced; ++i) {
        if (!is_kept(i, i) &&
            !replace(value_of(group, old, i), value_text(now, i, value_of(group, old, i).begin), now)) {
            return false;
        }
    }
    if (count > old.value_count) {
        return insert_values(group, old, now, replaced, replaced, count - tail);
    }
    return count == old.value_count || drop_values(group, old, now, replaced, old.value_count - tail);
}

/// Adds the first values to an entry that has none, or only a group.
bool LayoutEdits::fill_empty(const OldEntry& old, const ParserEntry& now, std::uint32_t count) {
    std::string text;
    for (std::uint32_t i = 0; i < count; ++i) {
        text += (i == 0 ? "" : old.is_call ? ", " : " ") + value_text(now, i, old.name.begin);
    }
    if (old.empty_tag.end != 0) {
        return replace(old.empty_tag, std::move(text), now);
    }
    if (old.is_call) {
        return replace({old.arguments_open, old.arguments_open}, std::move(text), now);
    }
    return replace({old.name.end, old.name.end}, ' ' + text, now);
}

/// Removes the blanks and the comma with a value: those after it when another value follows, else those before it. Also
/// removes a comment after it on its line, and keeps other comments.
bool LayoutEdits::drop_values(const OldGroup& group, const OldEntry& old, const ParserEntry& now,
                              std::uint32_t first, std::uint32_t last) {
    const TextRange dropped{value_of(group, old, first).begin, value_of(group, old, last - 1).end};
    if (last < old.value_count) {
        return drop_before(dropped, value_of(group, old, last), now);
    }
    if (first != 0) {
        return drop_behind(value_of(group, old, first - 1), dropped, now);
    }
    const bool stays_empty = !old.is_call && now.get_value_count() == 0;
    return replace(dropped, stays_empty ? std::string(bk::empty_tag) : std::string(), now);
}

bool LayoutEdits::drop_before(TextRange dropped, TextRange next, const ParserEntry& now) {
    FileRange place; // up to the first byte of the next value
    if (!locate({dropped.begin, next.begin + 1}, place)) {
        return refuse_split(now);
    }
    --place.end;
    FileRange values;
    locate(dropped, values);
    const std::string_view text = text_of(place.inclusion);
    const std::size_t comma = skip_blanks(text, values.end);
    const std::size_t end = comma < place.end && text[comma] == ',' ? comma + 1 : values.end;
    const std::size_t line = std::min(next_line(text, end), place.end);
    if (line == place.end || !ends_line(text, end)) { // the next value is on the same line
        return add_edit(place, {}, std::string(now.get_name().get_view()));
    }
    if (begins_line(text, place.begin)) {
        return add_edit({place.inclusion, line_begin(text, place.begin), line}, {},
                        std::string(now.get_name().get_view()));
    }
    const bool has_lines_between =
        text.substr(line, place.end - line).find_first_not_of(" \t\r\n") != std::string_view::npos;
    if (has_lines_between) {
        place.begin = trimmed_back(text, place.begin);
        place.end = trimmed_back(text, line - 1);
    }
    return add_edit(place, {}, std::string(now.get_name().get_view()));
}

bool LayoutEdits::drop_behind(TextRange before, TextRange dropped, const ParserEntry& now) {
    FileRange gap; // from the byte before it
    FileRange place;
    if (!locate({before.end - 1, dropped.end}, gap) || !locate(dropped, place)) {
        return refuse_split(now);
    }
    gap = {gap.inclusion, gap.begin + 1, place.begin};
    if (!has_comment(gap)) {
        return replace({before.end, dropped.end}, {}, now);
    }
    const std::string_view text = text_of(place.inclusion);
    const std::string about(now.get_name().get_view());
    for (std::size_t at = before.end; at < dropped.begin; ++at) {
        if (sources_.text()[at] == ',') {
            const std::size_t comma = sources_.map().find(at, 1).offset;
            if (line_begin(text, comma) == line_begin(text, place.begin)) {
                place.begin = comma;
                break;
            }
            add_edit({place.inclusion, trimmed_back(text, comma), comma + 1}, {}, about);
        }
    }
    const LineRange lines = removal_of(text, place.begin, place.end);
    return add_edit({place.inclusion, lines.begin, lines.end}, {}, about);
}

bool LayoutEdits::has_comment(const FileRange& place) const {
    return text_of(place.inclusion).substr(place.begin, place.end - place.begin).find("//") !=
           std::string_view::npos;
}

bool LayoutEdits::refuse_split(const ParserEntry& now) {
    return refuse(std::string(now.get_name().get_view()), "begins in one file and ends in another");
}

/// Whether a comment or a directive is inside a word, and would be lost with the word.
bool LayoutEdits::is_cut(TextRange word) {
    FileRange place;
    return locate(word, place) && place.end - place.begin != word.end - word.begin;
}

bool LayoutEdits::refuse_cut(const ParserEntry& now) {
    return refuse(std::string(now.get_name().get_view()),
                  "has a word that goes on after a comment or a directive: put a blank before that, and load "
                  "the document again");
}

bool LayoutEdits::insert_values(const OldGroup& group, const OldEntry& old, const ParserEntry& now,
                                std::uint32_t at, std::uint32_t first, std::uint32_t last) {
    const std::string between = separator(group, old);
    std::string text;
    if (at == 0) {
        const TextRange before = value_of(group, old, 0);
        for (std::uint32_t i = first; i < last; ++i) {
            text += value_text(now, i, before.begin) + between;
        }
        FileRange place;
        locate(before, place);
        place.end = place.begin;
        return add_edit(place, std::move(text), std::string(now.get_name().get_view()));
    }
    const std::uint32_t end = value_of(group, old, at - 1).end;
    for (std::uint32_t i = first; i < last; ++i) {
        text += between + value_text(now, i, end);
    }
    return replace({end, end}, std::move(text), now);
}

/// The separator of a new value: the blanks and commas between the last two values, if nothing else is there; otherwise a
/// comma or a blank.
std::string LayoutEdits::separator(const OldGroup& group, const OldEntry& old) const {
    if (old.value_count > 1) {
        const std::string_view between = words(
            {value_of(group, old, old.value_count - 2).end, value_of(group, old, old.value_count - 1).begin});
        if (between.find_first_not_of(" \t,") == std::string_view::npos) {
            return std::string(between);
        }
        return between.find(',') == std::string_view::npos ? " " : ", ";
    }
    return old.is_call ? ", " : " ";
}

} // namespace bk_parser
