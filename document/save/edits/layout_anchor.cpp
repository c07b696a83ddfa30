#include "document/save/edits/layout_edits_impl.h"
#include "document/save/edits/layout_lines_impl.h"

#include <algorithm>

// Chooses the place and the layout of new entries.

namespace bk_parser {

/// Between entries of two files, the new entry goes into the file that includes the other one, or both. So an entry that is
/// added after an include comes after its directive, not into the included file.
void LayoutEdits::find_anchor(const Gap& gap, Anchor& anchor) {
    const bool has_open = gap.group->open != 0;
    const bool has_close = gap.group->close < sources_.text().size();
    FileRange left;  // ends at the gap
    FileRange right; // begins at the gap
    if (gap.before != nullptr) {
        const Spot last = sources_.map().find(gap.before->tail - 1, 1);
        left = {last.inclusion, last.offset, last.offset + 1};
    } else if (has_open) {
        const Spot brace = sources_.map().find(gap.group->open - 1, 1);
        left = {brace.inclusion, brace.offset, brace.offset + 1};
    }
    if (gap.behind != nullptr || has_close) {
        const Spot next =
            sources_.map().find(gap.behind != nullptr ? gap.behind->name.begin : gap.group->close, 1);
        right = {next.inclusion, next.offset, next.offset + 1};
    }
    anchor.inclusion = common(left.inclusion, right.inclusion);
    if (gap.before != nullptr || has_open) {
        settle_behind(anchor, climb(left, anchor.inclusion), gap);
        return;
    }
    const std::string_view text = text_of(anchor.inclusion);
    if (gap.behind == nullptr && !has_close) {
        anchor.at = text.size();
        return;
    }
    right = climb(right, anchor.inclusion);
    const bool is_first = begins_line(text, right.begin);
    anchor.indent = indent_of(text, right.begin);
    anchor.at = is_first ? line_begin(text, right.begin) : right.begin;
    anchor.way = is_first ? Anchor::Way::lines_before : Anchor::Way::in_line_before;
}

void LayoutEdits::settle_behind(Anchor& anchor, const FileRange& place, const Gap& gap) {
    const std::string_view text = text_of(place.inclusion);
    if (!ends_line(text, place.end)) {
        anchor.at = place.end;
        anchor.way = Anchor::Way::in_line_behind;
        return;
    }
    anchor.indent = indent_behind(place, gap);
    anchor.at = next_line(text, place.end);
    const bool has_feed = anchor.at != 0 && text[anchor.at - 1] == '\n';
    anchor.way = has_feed ? Anchor::Way::lines_before : Anchor::Way::lines_behind;
}

/// The indentation of a new entry: that of the entry before it, if that entry begins a line; else one level more than the line
/// of the group's brace.
std::string LayoutEdits::indent_behind(const FileRange& place, const Gap& gap) {
    const std::string_view text = text_of(place.inclusion);
    FileRange first = place; // may be an include directive
    if (gap.before != nullptr) {
        const Spot begin = sources_.map().find(gap.before->last_begin, 1);
        if (begin.inclusion == place.inclusion) {
            first = {begin.inclusion, begin.offset, begin.offset};
        }
        if (begins_line(text, first.begin)) {
            return std::string(indent_of(text, first.begin));
        }
    }
    std::string indent(indent_of(text, first.begin));
    if (gap.group->open == 0) {
        return indent;
    }
    const Spot brace = sources_.map().find(gap.group->open - 1, 1);
    const bool is_inside =
        brace.inclusion == place.inclusion && line_begin(text, brace.offset) == line_begin(text, first.begin);
    return is_inside ? indent + unit_of(place.inclusion) : indent;
}

/// A new entry at the start of a file goes below the comments there, which may belong to the file. An entry that moved there
/// goes above the comments of the next entry.
void LayoutEdits::pass_comments(Anchor& anchor, const std::vector<Addition>& additions) const {
    const bool has_moved = std::any_of(additions.begin(), additions.end(), [](const Addition& addition) {
        return addition.moved_from != nullptr;
    });
    if (has_moved && anchor.way == Anchor::Way::lines_before) {
        const std::string_view text = text_of(anchor.inclusion);
        const std::size_t entry = skip_blanks(text, anchor.at);
        anchor.at = comments_above(text, entry);
    }
}

PrintLayout LayoutEdits::layout_at(const Anchor& anchor) {
    const std::string_view text = text_of(anchor.inclusion);
    return {anchor.indent, unit_of(anchor.inclusion),
            line_break(text, anchor.at == 0 ? 0 : line_begin(text, anchor.at - 1)), has_escapes_};
}

bool LayoutEdits::compose(const Anchor& anchor, const Gap& gap, const std::vector<Addition>& additions,
                          Edit& edit) {
    const std::string_view text = text_of(anchor.inclusion);
    const bool is_in_line =
        anchor.way == Anchor::Way::in_line_behind || anchor.way == Anchor::Way::in_line_before;
    // Avoids searching a long line for its ends each time.
    const std::string line_end(is_in_line ? std::string_view() : layout_at(anchor).line_break);
    const bool ends_with_line = line_begin(text, text.size()) == text.size();
    for (const Addition& addition : additions) {
        switch (anchor.way) {
        case Anchor::Way::lines_behind:
            edit.text += line_end;
            break;
        case Anchor::Way::in_line_behind:
            edit.text += ' ';
            break;
        case Anchor::Way::at_end:
            edit.text += (&addition == &additions.front() && ends_with_line) ? "" : line_end;
            break;
        default:
            break;
        }
        if (!(is_in_line ? add_in_line(anchor, gap, addition, edit)
                         : add_lines(anchor, gap, addition, edit))) {
            return false;
        }
        if (anchor.way == Anchor::Way::lines_before) {
            edit.text += line_end;
        } else if (anchor.way == Anchor::Way::in_line_before) {
            edit.text += ' ';
        }
    }
    if (anchor.way == Anchor::Way::at_end && ends_with_line) {
        edit.text += line_end;
    }
    if (anchor.way == Anchor::Way::in_line_behind && skip_blanks(text, anchor.at) == anchor.at &&
        anchor.at < text.size() && text[anchor.at] != '\n') {
        edit.text += ' ';
    }
    return true;
}

/// An entry that only moved takes its lines along, with the comments after and above it.
bool LayoutEdits::add_lines(const Anchor& anchor, const Gap& gap, const Addition& addition, Edit& edit) {
    FileRange place;
    if (can_carry(addition, anchor.inclusion, place)) {
        take_comment(place);
        take_comments_above(place);
        return carry(anchor, gap, addition, place, edit);
    }
    has_printed_ = true;
    const PrintLayout layout = layout_at(anchor);
    bool is_first = true;
    for (std::uint32_t i = 0; i < addition.count; ++i) {
        if (addition.entries[i] != nullptr) {
            note_quotes(*addition.entries[i]);
            edit.text += is_first ? std::string_view() : layout.line_break;
            edit.text += layout.indent + print_lines(*addition.entries[i], layout);
            is_first = false;
        }
    }
    return true;
}

/// Includes the comment after an entry that ends its line.
void LayoutEdits::take_comment(FileRange& place) const {
    const std::string_view text = text_of(place.inclusion);
    if (removal_of(text, place.begin, place.end).has_whole_lines) {
        const std::size_t line = next_line(text, place.end);
        const bool has_feed = line != 0 && text[line - 1] == '\n';
        place.end = std::max(place.end, trimmed_back(text, has_feed ? line - 1 : line));
    }
}

/// Includes the comments directly above an entry that begins its line, but only when the entry moves to lines of its own.
void LayoutEdits::take_comments_above(FileRange& place) const {
    const std::string_view text = text_of(place.inclusion);
    if (begins_line(text, place.begin)) {
        const std::size_t comments = comments_above(text, place.begin);
        place.begin = std::min(place.begin, skip_blanks(text, comments));
    }
}

bool LayoutEdits::add_in_line(const Anchor& anchor, const Gap& gap, const Addition& addition, Edit& edit) {
    FileRange place;
    if (can_carry(addition, anchor.inclusion, place)) {
        const std::size_t end = place.end;
        take_comment(place);
        if (!carry(anchor, gap, addition, place, edit)) {
            return false;
        }
        if (place.end != end) { // the comment takes the rest of the line
            const std::string_view text = text_of(anchor.inclusion);
            edit.text += line_break(text, anchor.at);
            edit.text += indent_of(text, anchor.at);
        }
        return true;
    }
    has_printed_ = true;
    bool is_first = true;
    for (std::uint32_t i = 0; i < addition.count; ++i) {
        if (addition.entries[i] != nullptr) {
            note_quotes(*addition.entries[i]);
            edit.text += (is_first ? "" : " ") + print_in_line(*addition.entries[i], has_escapes_);
            is_first = false;
        }
    }
    return true;
}

} // namespace bk_parser
