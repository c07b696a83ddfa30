#include "document/save/edits/layout_edits_impl.h"
#include "document/save/edits/layout_lines_impl.h"

#include <algorithm>

// Edits the entries of a group: decides which stay in place, and which are moved, removed and added.

namespace bk_parser {

namespace {

/// Chooses the entries that stay in place: a longest increasing subsequence of their old positions in the new order.
class KeptInOrder {
public:
    KeptInOrder(const OldGroup& group, const std::vector<std::uint32_t>& order)
        : best_(group.entries.size() + 1), runs_(order.size()) {
        Best overall;
        for (std::uint32_t i = 0; i < order.size(); ++i) {
            const Best before = best_before(order[i]);
            runs_[i] = before.last;
            // Between equal choices, prefers that the changed entry stays, because an unchanged one takes its layout along when
            // it moves.
            const OldEntry& entry = group.entries[order[i]];
            const Best run{before.count + 2 * std::uint64_t{entry.count} + (entry.has_changed ? 1 : 0), i};
            note(order[i], run);
            overall = run.count > overall.count ? run : overall;
        }
        stays_.resize(order.size());
        for (std::uint32_t i = overall.last; i != no_index; i = runs_[i]) {
            stays_[i] = true;
        }
    }

    bool stays(std::size_t i) const { return stays_[i]; }

private:
    /// The weight of an increasing run, and its last entry.
    struct Best {
        std::uint64_t count = 0;
        std::uint32_t last = no_index;
    };

    // A Fenwick tree over the old positions: each node has the best run of the positions that it covers.
    Best best_before(std::uint32_t position) const noexcept {
        Best best;
        for (std::uint32_t node = position; node != 0; node &= node - 1) {
            best = best_[node].count > best.count ? best_[node] : best;
        }
        return best;
    }
    void note(std::uint32_t position, const Best& run) noexcept {
        for (std::size_t node = position + 1; node < best_.size(); node += node & (~node + 1)) {
            best_[node] = run.count > best_[node].count ? run : best_[node];
        }
    }

    std::vector<Best> best_;
    std::vector<std::uint32_t> runs_; // for each entry, the one before it in its run
    std::vector<bool> stays_;
};

} // namespace

bool LayoutEdits::edit_group(std::uint32_t index) {
    const OldGroup& group = record_.group(index);
    std::vector<std::uint32_t> order; // old positions of the remaining entries, by new position
    for (std::uint32_t i = 0; i < group.entries.size(); ++i) {
        if (group.entries[i].new_index != no_index) {
            order.push_back(i);
        }
    }
    std::sort(order.begin(), order.end(), [&group](std::uint32_t a, std::uint32_t b) {
        return group.entries[a].new_index < group.entries[b].new_index;
    });
    const KeptInOrder kept(group, order);
    std::vector<bool> is_kept(group.entries.size());
    const CoreVector<ParserEntry*>& now = group.now->get_entries();
    std::vector<Addition> additions;
    const OldEntry* before = nullptr;
    std::uint32_t at = 0;
    const auto add_new_up_to = [&](std::uint32_t end) {
        for (; at < end; ++at) {
            if (now[at] != nullptr) {
                const OldEntry* const lost = take_lost(*group.now, at);
                additions.push_back({&now[at], 1, lost, lost != nullptr});
            }
        }
    };
    for (std::size_t i = 0; i < order.size(); ++i) {
        const OldEntry& old = group.entries[order[i]];
        add_new_up_to(old.new_index);
        at = old.new_index + old.count;
        if (!kept.stays(i)) {
            additions.push_back({&now[old.new_index], old.count, &old, false});
            continue;
        }
        is_kept[order[i]] = true;
        if (!add_between({&group, before, &old}, additions) ||
            (old.has_changed && !edit_entry(group, old, *now[old.new_index]))) {
            return false;
        }
        before = &old;
    }
    add_new_up_to(now.get_count());
    if (!add_between({&group, before, nullptr}, additions)) {
        return false;
    }
    return remove_unkept(group, is_kept);
}

/// Removes entries that are deleted or carried away. Neighbours on one line become one edit.
bool LayoutEdits::remove_unkept(const OldGroup& group, const std::vector<bool>& is_kept) {
    for (std::size_t i = 0; i < group.entries.size(); ++i) {
        if (is_kept[i]) {
            continue;
        }
        TextRange range{group.entries[i].name.begin, group.entries[i].end};
        const std::string about(words(group.entries[i].name));
        const OldEntry& first = group.entries[i];
        FileRange place;
        FileRange next;
        while (i + 1 < group.entries.size() && !is_kept[i + 1] && group.entries[i].tail == range.end &&
               locate(range, place) &&
               locate({group.entries[i + 1].name.begin, group.entries[i + 1].end}, next) &&
               next.inclusion == place.inclusion && next.begin >= place.end &&
               text_of(place.inclusion).substr(place.end, next.begin - place.end).find('\n') ==
                   std::string_view::npos) {
            range.end = group.entries[++i].end;
        }
        if (!remove_range(range, about, first, group.entries[i])) {
            return false;
        }
    }
    return true;
}

bool LayoutEdits::remove_range(TextRange range, std::string about, const OldEntry& first,
                               const OldEntry& last) {
    FileRange place;
    if (!locate(range, place)) {
        return refuse(about, "begins in one file and ends in another");
    }
    const LineRange lines = removal_of(text_of(place.inclusion), place.begin, place.end);
    add_edit({place.inclusion, lines.begin, lines.end}, {}, std::move(about));
    removals_.push_back({edits_.size() - 1, place, &first, &last, lines.has_whole_lines});
    return true;
}

/// When whole lines between two blank lines are removed, removes the second blank line, too.
void LayoutEdits::join_blank_lines() {
    std::vector<Edit*> whole;
    for (const Removal& removal : removals_) {
        if (removal.has_whole_lines) {
            whole.push_back(&edits_[removal.edit]);
        }
    }
    std::sort(whole.begin(), whole.end(), [](const Edit* a, const Edit* b) {
        return a->inclusion != b->inclusion ? a->inclusion < b->inclusion : a->begin < b->begin;
    });
    const Edit* first = nullptr; // of adjacent removals
    for (std::size_t i = 0; i < whole.size(); ++i) {
        first = first == nullptr ? whole[i] : first;
        const bool adjoins = i + 1 < whole.size() && whole[i + 1]->inclusion == whole[i]->inclusion &&
                             whole[i + 1]->begin <= whole[i]->end;
        if (adjoins) {
            continue;
        }
        const std::string_view text = text_of(whole[i]->inclusion);
        if (is_behind_blank_line(text, first->begin) && is_at_blank_line(text, whole[i]->end)) {
            whole[i]->end = next_line(text, whole[i]->end);
        }
        first = nullptr;
    }
}

bool LayoutEdits::add_between(const Gap& gap, std::vector<Addition>& additions) {
    if (additions.empty()) {
        return true;
    }
    Anchor anchor;
    find_anchor(gap, anchor);
    pass_comments(anchor, additions);
    Edit edit;
    edit.inclusion = anchor.inclusion;
    edit.begin = anchor.at;
    edit.end = anchor.at;
    edit.about = additions.front().entries[0]->get_name().get_view();
    edit.inside = inside_;
    if (!compose(anchor, gap, additions, edit)) {
        return false;
    }
    edits_.push_back(std::move(edit));
    additions.clear();
    return true;
}

} // namespace bk_parser
