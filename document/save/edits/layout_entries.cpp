#include "document/save/edits/layout_edits_impl.h"
#include "document/save/edits/layout_lines_impl.h"
#include "parser/model/parser_entry_impl.h"
#include "parser/model/parser_value_impl.h"
#include "parser/words/parser_word_rules_impl.h"

#include <utility>

// Edits an entry that stays in its place and has changed: its name, its group, or all of it.

namespace bk_parser {

namespace {

bool is_group(const ParserEntry& entry, std::uint32_t i) noexcept {
    return bk::EntryAccess::value(entry, i).type() == ParserValue::TYPE_GROUP;
}

/// How many values are before the first group.
std::uint32_t count_before_group(const ParserEntry& entry) noexcept {
    std::uint32_t i = 0;
    while (i < entry.get_value_count() && !is_group(entry, i)) {
        ++i;
    }
    return i;
}

bool has_type_of(const OldEntry& old, char first, const ParserEntry& now) noexcept {
    switch (now.get_type()) {
    case ParserEntry::TYPE_ENTRY:
        return !old.is_call && first != '#';
    case ParserEntry::TYPE_KEYWORD:
        return first == '#';
    case ParserEntry::TYPE_FUNCTION_CALL:
        return old.is_call;
    default:
        return false;
    }
}

} // namespace

bool LayoutEdits::edit_entry(const OldGroup& group, const OldEntry& old, const ParserEntry& now) {
    const std::uint32_t count = count_before_group(now);
    const bool has_odd_group =
        now.get_value_count() > count + 1 || (old.is_call && count < now.get_value_count());
    if (has_odd_group || !has_type_of(old, words(old.name).front(), now)) {
        return reprint(old, now);
    }
    const bool has_lost_group = old.braces.end != 0 && count == now.get_value_count();
    if ((old.has_own_change || has_lost_group) && !owns_values(group, old, now)) {
        return false;
    }
    return edit_head(old, now) && edit_values(group, old, now, count) && edit_last_group(old, now, count);
}

bool LayoutEdits::edit_head(const OldEntry& old, const ParserEntry& now) {
    bk::NameParts name;
    bk::NameParts template_name;
    const std::string_view word = words(old.name);
    name.base = word;
    if (word.front() != '#') {
        bk::classify_name(word, name, template_name);
    }
    if (name.base == now.get_name().get_view() && template_name.base == now.get_template().get_view() &&
        name.array_count == now.get_array_count()) {
        return true;
    }
    if (is_cut(old.name)) {
        return refuse_cut(now);
    }
    return replace(old.name, print_head(now), now);
}

bool LayoutEdits::edit_last_group(const OldEntry& old, const ParserEntry& now, std::uint32_t count) {
    const bool had_group = old.braces.end != 0;
    const bool has_group = count < now.get_value_count();
    if (had_group && has_group) {
        if (!old.has_same_group) {
            pending_.push_back({old.group, inside_});
        }
        return true;
    }
    if (has_group) {
        const std::uint32_t at = old.end;
        return replace({at, at}, ' ' + value_text(now, count, at), now);
    }
    if (!had_group) {
        return true;
    }
    if (count == 0 && old.value_count == 0 && old.empty_tag.end == 0) {
        return replace(old.braces, std::string(bk::empty_tag), now);
    }
    return drop_group(old, now);
}

/// Removes the group with the blanks before it. Keeps comments in between.
bool LayoutEdits::drop_group(const OldEntry& old, const ParserEntry& now) {
    const std::string_view before = sources_.text().substr(0, old.braces.begin);
    const auto begin = static_cast<std::uint32_t>(before.find_last_not_of(" \t\r\n") + 1);
    FileRange gap; // including one byte on each side
    FileRange braces;
    if (locate({begin - 1, old.braces.begin + 1}, gap) && has_comment(gap) && locate(old.braces, braces)) {
        const LineRange lines = removal_of(text_of(braces.inclusion), braces.begin, braces.end);
        return add_edit({braces.inclusion, lines.begin, lines.end}, {},
                        std::string(now.get_name().get_view()));
    }
    return replace({begin, old.braces.end}, {}, now);
}

/// Prints the entry anew in its place.
bool LayoutEdits::reprint(const OldEntry& old, const ParserEntry& now) {
    note_quotes(now);
    return replace({old.name.begin, old.end}, print_lines(now, layout_of(old.name.begin)), now);
}

/// Replaces a range. An empty range is located right after the byte before it.
bool LayoutEdits::replace(TextRange range, std::string text, const ParserEntry& about) {
    FileRange place;
    std::string name(about.get_name().get_view());
    if (range.begin == range.end) {
        const Spot last = sources_.map().find(range.begin - 1, 1);
        place = {last.inclusion, last.offset + 1, last.offset + 1};
    } else if (!locate(range, place)) {
        return refuse(name, "begins in one file and ends in another");
    }
    return add_edit(place, std::move(text), std::move(name));
}

bool LayoutEdits::add_edit(const FileRange& place, std::string text, std::string about) {
    Edit& edit = edits_.emplace_back();
    edit.inclusion = place.inclusion;
    edit.begin = place.begin;
    edit.end = place.end;
    edit.text = std::move(text);
    edit.about = std::move(about);
    edit.inside = inside_;
    return true;
}

/// The layout for text that is printed into the line of this place.
PrintLayout LayoutEdits::layout_of(std::uint32_t at) {
    const Spot spot = sources_.map().find(at, 1);
    const std::string_view text = text_of(spot.inclusion);
    return {std::string(indent_of(text, spot.offset)), unit_of(spot.inclusion), line_break(text, spot.offset),
            has_escapes_};
}

std::string LayoutEdits::value_text(const ParserEntry& now, std::uint32_t i, std::uint32_t at) {
    note_quotes(bk::EntryAccess::value(now, i));
    if (!is_group(now, i)) {
        return print_value(bk::EntryAccess::value(now, i), {{}, {}, "\n", has_escapes_});
    }
    return print_value(bk::EntryAccess::value(now, i), layout_of(at));
}

} // namespace bk_parser
