#include "document/save/edits/layout_edits_impl.h"

#include <algorithm>

// Handles includes inside of edited bytes. A printed entry has the content of its includes, not their directives.

namespace bk_parser {

/// Sorts the removals by place, and notes for each place the removal that reaches furthest.
void LayoutEdits::note_covers() {
    for (const Edit& edit : edits_) {
        if (edit.begin < edit.end && !edit.moves) {
            covers_.push_back({edit.inclusion, edit.begin, &edit});
        }
    }
    std::sort(covers_.begin(), covers_.end());
    for (std::size_t i = 1; i < covers_.size(); ++i) {
        const Cover& before = covers_[i - 1];
        if (before.inclusion == covers_[i].inclusion && before.furthest->end > covers_[i].furthest->end) {
            covers_[i].furthest = before.furthest;
        }
    }
}

/// The edit that removes the directive, or the directive of an include around it.
const Edit* LayoutEdits::cover_of(Spot directive) const noexcept {
    for (;;) {
        const Cover place{directive.inclusion, directive.offset + 1, nullptr};
        const auto behind = std::lower_bound(covers_.begin(), covers_.end(), place);
        if (behind != covers_.begin()) {
            const Cover& cover = *std::prev(behind);
            if (cover.inclusion == directive.inclusion && directive.offset < cover.furthest->end) {
                return cover.furthest;
            }
        }
        if (directive.inclusion == 0) {
            return nullptr;
        }
        directive = sources_.map().inclusion(directive.inclusion).directive;
    }
}

/// A failed include, or one that was not followed, left nothing in the tree, so only its directive shows that it exists: it must stay. It may go with a
/// removed entry, but not while other entries are printed, because one of those may be the removed entry, moved.
bool LayoutEdits::keeps_includes() {
    for (const Spot& directive : sources_.left_out()) {
        const Edit* const edit = cover_of(directive);
        if (edit != nullptr && (!edit->removes_entries || has_printed_)) {
            return refuse(edit->about, sources_.follows_includes()
                                           ? "holds an include that was not found"
                                           : "holds an include that was not followed");
        }
    }
    return true;
}

void LayoutEdits::note_dropped_files() {
    const SourceMap& map = sources_.map();
    std::vector<bool> stays(map.get_files().size());
    for (std::size_t i = 0; i < map.get_inclusion_count(); ++i) {
        const Edit* const edit = i == 0 ? nullptr : cover_of(map.inclusion(i).directive);
        if (edit == nullptr || !edit->removes_entries || has_printed_) {
            stays[map.inclusion(i).file] = true;
        }
    }
    for (std::size_t file = 0; file < stays.size(); ++file) {
        if (!stays[file]) {
            dropped_.push_back(map.get_files()[file]->path);
        }
    }
}

} // namespace bk_parser
