#include "document/save/edits/layout_edits_impl.h"
#include "document/save/edits/layout_lines_impl.h"

// Where new entries are put, and how they look there.

namespace bk_parser {

/// Between entries of two files, the file that includes the one, or both, takes what is new: an entry that is added behind an
/// include stands behind its directive, not in the included file.
bool LayoutEdits::find_anchor(const Gap& gap, Anchor& anchor) {
    const bool has_open = gap.group->open != 0;
    const bool has_close = gap.group->close < sources_.text().size();
    FileRange left;  // that ends at the gap
    FileRange right; // that begins behind it
    if (gap.before != nullptr) {
        const Spot last = sources_.map().find(gap.before->end - 1, 1);
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
        return true;
    }
    const std::string_view text = text_of(anchor.inclusion);
    if (gap.behind == nullptr && !has_close) {
        anchor.at = text.size();
        return true;
    }
    right = climb(right, anchor.inclusion);
    const bool is_first = begins_line(text, right.begin);
    anchor.indent = indent_of(text, right.begin);
    anchor.at = is_first ? line_begin(text, right.begin) : right.begin;
    anchor.way = is_first ? Anchor::Way::lines_before : Anchor::Way::in_line_before;
    return true;
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

/// That of the entry before, where it begins a line; else one level more than the line of the group's brace has.
std::string LayoutEdits::indent_behind(const FileRange& place, const Gap& gap) {
    const std::string_view text = text_of(place.inclusion);
    FileRange first = place; // an include directive
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

PrintLayout LayoutEdits::layout_at(const Anchor& anchor) {
    const std::string_view text = text_of(anchor.inclusion);
    return {anchor.indent, unit_of(anchor.inclusion),
            line_break(text, anchor.at == 0 ? 0 : line_begin(text, anchor.at - 1)), has_escapes_};
}

std::string LayoutEdits::compose(const Anchor& anchor, const std::vector<Addition>& additions) {
    const std::string_view text = text_of(anchor.inclusion);
    const bool is_in_line =
        anchor.way == Anchor::Way::in_line_behind || anchor.way == Anchor::Way::in_line_before;
    // A long line is not searched for its ends each time.
    const std::string line_end(is_in_line ? std::string_view() : layout_at(anchor).line_break);
    std::string result;
    for (const Addition& addition : additions) {
        switch (anchor.way) {
        case Anchor::Way::lines_before:
            result += addition_lines(anchor, addition) + line_end;
            break;
        case Anchor::Way::lines_behind:
            result += line_end + addition_lines(anchor, addition);
            break;
        case Anchor::Way::in_line_behind:
            result += ' ' + addition_in_line(addition);
            break;
        case Anchor::Way::in_line_before:
            result += addition_in_line(addition) + ' ';
            break;
        case Anchor::Way::at_end:
            result += result.empty() && (text.empty() || text.back() == '\n') ? "" : line_end;
            result += addition_lines(anchor, addition);
            break;
        }
    }
    const bool ends_with_line = !text.empty() && text.back() == '\n';
    if (anchor.way == Anchor::Way::at_end && (ends_with_line || text.empty())) {
        result += line_end;
    }
    const bool is_glued = anchor.way == Anchor::Way::in_line_behind && anchor.at < text.size() &&
                          text[anchor.at] != ' ' && text[anchor.at] != '\t' && text[anchor.at] != '\r' &&
                          text[anchor.at] != '\n';
    return is_glued ? result + ' ' : result;
}

/// Entries that only moved take their lines along, comments too.
std::string LayoutEdits::addition_lines(const Anchor& anchor, const Addition& addition) {
    FileRange place;
    const OldEntry* const old = addition.moved_from;
    if (old != nullptr && !old->has_changed && is_of_one_file({old->name.begin, old->end}) &&
        locate({old->name.begin, old->end}, place)) {
        const std::string_view text = text_of(place.inclusion);
        const LineRange lines = removal_of(text, place.begin, place.end);
        std::size_t end = place.end;
        if (lines.has_whole_lines) {
            end = trimmed_back(text, next_line(text, place.end));
            end = text.substr(0, end).ends_with('\n') ? trimmed_back(text, end - 1) : end;
        }
        return indented_anew(text.substr(place.begin, end - place.begin), indent_of(text, place.begin),
                             anchor.indent);
    }
    has_printed_ = true;
    const PrintLayout layout = layout_at(anchor);
    std::string result;
    for (std::uint32_t i = 0; i < addition.count; ++i) {
        if (addition.entries[i] != nullptr) {
            result += result.empty() ? std::string() : std::string(layout.line_break);
            result += layout.indent + print_lines(*addition.entries[i], layout);
        }
    }
    return result;
}

std::string LayoutEdits::addition_in_line(const Addition& addition) {
    has_printed_ = true;
    std::string result;
    for (std::uint32_t i = 0; i < addition.count; ++i) {
        if (addition.entries[i] != nullptr) {
            result += (result.empty() ? "" : " ") + print_in_line(*addition.entries[i], has_escapes_);
        }
    }
    return result;
}

} // namespace bk_parser
