#include "document/save/apply/text_edits_impl.h"
#include "document/save/edits/layout_edits_impl.h"
#include "document/save/edits/layout_lines_impl.h"

#include <algorithm>
#include <utility>

// Carries the bytes of moved entries to the new place, with their comments and with all changes inside.

namespace bk_parser {

/// Bytes with an include directive may only move within their file: in another file the directive may find another file.
bool LayoutEdits::can_carry(const Addition& addition, std::size_t target, FileRange& place) {
    if (addition.moved_from == nullptr) {
        return false;
    }
    const TextRange range{addition.moved_from->name.begin, addition.moved_from->end};
    if (!locate(range, place)) {
        return false;
    }
    const bool stays_in_file = place.inclusion == target && !addition.comes_from_elsewhere;
    return stays_in_file || is_of_one_file(range);
}

bool LayoutEdits::carry(const Anchor& anchor, const Gap& gap, const Addition& addition,
                        const FileRange& place, Edit& edit) {
    const OldEntry& old = *addition.moved_from;
    const auto index = static_cast<std::uint32_t>(carries_.size());
    const bool has_lines =
        anchor.way != Anchor::Way::in_line_behind && anchor.way != Anchor::Way::in_line_before;
    carries_.push_back({place, std::string(indent_of(text_of(place.inclusion), place.begin)), anchor.indent,
                        has_lines, std::string()});
    edit.carried.push_back({edit.text.size(), index});
    carried_.emplace(&old, index);
    if (addition.comes_from_elsewhere) {
        return true;
    }
    const std::uint32_t around = std::exchange(inside_, index);
    const bool is_done = !old.has_changed || edit_entry(*gap.group, old, *addition.entries[0]);
    inside_ = around;
    return is_done;
}

/// Inserts the carried texts into their edits, after applying the changes inside of them.
void LayoutEdits::fill_carries() {
    if (carries_.empty()) {
        return;
    }
    std::vector<std::vector<std::size_t>> inside(carries_.size());
    for (std::size_t i = 0; i < edits_.size(); ++i) {
        Edit& edit = edits_[i];
        if (edit.inside != no_index && edit.inclusion == carries_[edit.inside].place.inclusion) {
            inside[edit.inside].push_back(i);
        } else {
            edit.inside = no_index; // in an included file, which does not move
        }
    }
    for (std::size_t i = carries_.size(); i-- > 0;) {
        Carry& carry = carries_[i];
        std::vector<Edit> changes;
        for (const std::size_t at : inside[i]) {
            Edit& edit = edits_[at];
            fill(edit, carries_);
            // In an unclosed group, a new entry may be placed after the last word of the carried text.
            const auto in_carry = [&place = carry.place](std::size_t offset) {
                return std::clamp(offset, place.begin, place.end) - place.begin;
            };
            edit.begin = in_carry(edit.begin);
            edit.end = in_carry(edit.end);
            changes.push_back(std::move(edit));
        }
        const std::string_view text = text_of(carry.place.inclusion);
        sort_edits(changes);
        carry.text = edited(text.substr(carry.place.begin, carry.place.end - carry.place.begin), changes);
        carry.text.resize(carry.text.find_last_not_of(" \t\r\n") + 1);
        if (carry.has_lines) {
            carry.text = indented_anew(carry.text, carry.from, carry.to);
        }
    }
    std::erase_if(edits_, [](const Edit& edit) { return edit.inside != no_index; });
    for (Edit& edit : edits_) {
        fill(edit, carries_);
    }
}

void LayoutEdits::fill(Edit& edit, const std::vector<Carry>& carries) {
    if (edit.carried.empty()) {
        return;
    }
    std::string text;
    std::size_t at = 0;
    for (const CarriedText& carried : edit.carried) {
        text.append(edit.text, at, carried.at - at);
        text += carries[carried.carry].text;
        at = carried.at;
    }
    text.append(edit.text, at);
    edit.text = std::move(text);
    edit.carried.clear();
}

} // namespace bk_parser
