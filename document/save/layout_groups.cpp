#include "document/save/layout_edits_impl.h"
#include "document/save/layout_lines_impl.h"

#include <algorithm>

// The entries of a group: which stay where they are, which are moved, removed and added.

namespace bk_parser {

namespace {

/// The longest run of entries that are in their old order: their positions in `order`, which is sorted by new position.
std::vector<bool> longest_in_order(const std::vector<std::uint32_t>& order) {
    std::vector<std::uint32_t> tails; // the last element of the best run of each length
    std::vector<std::uint32_t> before(order.size(), no_index);
    for (std::uint32_t i = 0; i < order.size(); ++i) {
        const auto place =
            std::lower_bound(tails.begin(), tails.end(), i,
                             [&order](std::uint32_t a, std::uint32_t b) { return order[a] < order[b]; });
        if (place != tails.begin()) {
            before[i] = *std::prev(place);
        }
        if (place == tails.end()) {
            tails.push_back(i);
        } else {
            *place = i;
        }
    }
    std::vector<bool> stays(order.size());
    for (std::uint32_t i = tails.empty() ? no_index : tails.back(); i != no_index; i = before[i]) {
        stays[i] = true;
    }
    return stays;
}

} // namespace

bool LayoutEdits::edit_group(std::uint32_t index) {
    const OldGroup& group = record_.group(index);
    std::vector<std::uint32_t> order; // of the entries that are still there, by new position
    for (std::uint32_t i = 0; i < group.entries.size(); ++i) {
        if (group.entries[i].new_index != no_index) {
            order.push_back(i);
        }
    }
    std::sort(order.begin(), order.end(), [&group](std::uint32_t a, std::uint32_t b) {
        return group.entries[a].new_index < group.entries[b].new_index;
    });
    const std::vector<bool> stays = longest_in_order(order);
    std::vector<bool> is_kept(group.entries.size());
    const CoreVector<ParserEntry*>& now = group.now->get_entries();
    std::vector<Addition> additions;
    const OldEntry* before = nullptr;
    std::uint32_t at = 0;
    const auto add_new_up_to = [&](std::uint32_t end) {
        for (; at < end; ++at) {
            if (now[at] != nullptr) {
                additions.push_back({&now[at], 1, nullptr});
            }
        }
    };
    for (std::size_t i = 0; i < order.size(); ++i) {
        const OldEntry& old = group.entries[order[i]];
        add_new_up_to(old.new_index);
        at = old.new_index + old.count;
        if (!stays[i]) {
            additions.push_back({&now[old.new_index], old.count, &old});
            continue;
        }
        is_kept[order[i]] = true;
        add_between({&group, before, &old}, additions);
        before = &old;
        if (!reason_.empty() || (old.has_changed && !edit_entry(group, old, *now[old.new_index]))) {
            return false;
        }
    }
    add_new_up_to(now.get_count());
    add_between({&group, before, nullptr}, additions);
    if (!reason_.empty()) {
        return false;
    }
    // Entries that are removed, one behind the other on a line as one.
    for (std::size_t i = 0; i < group.entries.size(); ++i) {
        if (is_kept[i]) {
            continue;
        }
        TextRange range{group.entries[i].name.begin, group.entries[i].end};
        const std::string about(words(group.entries[i].name));
        FileRange place;
        FileRange next;
        while (i + 1 < group.entries.size() && !is_kept[i + 1] && locate(range, place) &&
               locate({group.entries[i + 1].name.begin, group.entries[i + 1].end}, next) &&
               next.inclusion == place.inclusion && next.begin >= place.end &&
               text_of(place.inclusion).substr(place.end, next.begin - place.end).find('\n') ==
                   std::string_view::npos) {
            range.end = group.entries[++i].end;
        }
        if (!remove_range(range, about)) {
            return false;
        }
    }
    return true;
}

bool LayoutEdits::remove_range(TextRange range, std::string about) {
    FileRange place;
    if (!locate(range, place)) {
        return refuse(std::move(about), "begins in one file and ends in another");
    }
    const LineRange lines = removal_of(text_of(place.inclusion), place.begin, place.end);
    edits_.push_back({place.inclusion, lines.begin, lines.end, {}, std::move(about)});
    return true;
}

void LayoutEdits::add_between(const Gap& gap, std::vector<Addition>& additions) {
    if (additions.empty()) {
        return;
    }
    Anchor anchor;
    if (find_anchor(gap, anchor)) {
        edits_.push_back({anchor.inclusion, anchor.at, anchor.at, compose(anchor, additions),
                          std::string(additions.front().entries[0]->get_name().get_view())});
    }
    additions.clear();
}

} // namespace bk_parser
