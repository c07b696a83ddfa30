#include "document/save/edits/layout_edits_impl.h"
#include "document/save/edits/layout_lines_impl.h"
#include "document/save/proof/read_back_impl.h"

#include <algorithm>
#include <string>

// Finds entries that moved to another group. Their line and column identify them. They take their bytes along if they did not
// change.

namespace bk_parser {

namespace {

std::uint64_t key_of(core_ulong line, core_ulong column) noexcept {
    return std::uint64_t{line} << 32 | column;
}

} // namespace

void LayoutEdits::note_lost_entries() {
    for (std::uint32_t i = 0; i < record_.group_count(); ++i) {
        for (const OldEntry& old : record_.group(i).entries) {
            if (old.new_index == no_index) {
                lost_.emplace(key_of(old.line, old.column), &old);
            }
        }
    }
}

/// The old entry that the entry at `position` was, or null. Each old entry is found at most once.
const OldEntry* LayoutEdits::take_lost(const ParserGroup& group, std::uint32_t position) {
    const ParserEntry& entry = *group.get_entries()[position];
    const auto found = lost_.find(key_of(entry.get_line(), entry.get_column()));
    if (found == lost_.end()) {
        return nullptr;
    }
    const OldEntry& old = *found->second;
    const std::string text(words({old.name.begin, old.end})); // the parser needs a NUL after the text
    if (!text.starts_with(entry.get_name().get_view()) ||
        !ReadBack(text, group, position, position + 1, has_escapes_).run()) {
        return nullptr;
    }
    lost_.erase(found);
    return &old;
}

/// Called after all groups: finds the removed entries that are now elsewhere, and extends their removals to the comments
/// above them if these moved along.
void LayoutEdits::note_moves() {
    for (const Removal& removal : removals_) {
        Edit& edit = edits_[removal.edit];
        edit.moves = std::all_of(removal.first, removal.last + 1,
                                 [this](const OldEntry& old) { return carried_.contains(&old); });
        edit.removes_entries = !edit.moves;
        const auto first = carried_.find(removal.first);
        if (first != carried_.end() && carries_[first->second].place.begin < removal.place.begin) {
            const LineRange lines =
                removal_of(text_of(edit.inclusion), carries_[first->second].place.begin, removal.place.end);
            edit.begin = lines.begin;
            edit.end = lines.end;
        }
    }
}

} // namespace bk_parser
