#include "document/merge/item_match_impl.h"

#include "document/compare/sequence_match_impl.h"

#include <algorithm>
#include <deque>
#include <unordered_map>
#include <utility>

namespace bk_parser {

namespace {

using Items = std::vector<std::uint32_t>;
/// For each item of one group, by its number in the text, the matching item of the other group.
using ItemMap = std::unordered_map<std::uint32_t, std::uint32_t>;

void match_equal(const TextItems& left, const Items& left_items, const TextItems& right,
                 const Items& right_items, ItemMap& right_of) {
    std::unordered_map<std::uint64_t, std::uint32_t> kinds;
    const auto kinds_of = [&kinds](const TextItems& text, const Items& items) {
        Items result;
        for (const std::uint32_t i : items) {
            const auto next = static_cast<std::uint32_t>(kinds.size());
            result.push_back(kinds.emplace(text.items[i].content, next).first->second);
        }
        return result;
    };
    const Items ours = kinds_of(left, left_items);
    const Items theirs = kinds_of(right, right_items);
    for (const auto& [i, k] : match_sequences(ours, theirs, static_cast<std::uint32_t>(kinds.size()))) {
        right_of.emplace(left_items[i], right_items[k]);
    }
}

ItemMap inverse(const ItemMap& map) {
    ItemMap result;
    for (const auto& [left, right] : map) {
        result.emplace(right, left);
    }
    return result;
}

/// Matches equal items in their order, then each other item with the next one of its label.
ItemMap match_items(const TextItems& left, const Items& left_items, const TextItems& right,
                    const Items& right_items) {
    ItemMap right_of;
    match_equal(left, left_items, right, right_items, right_of);
    const ItemMap left_of = inverse(right_of);
    std::unordered_map<std::uint64_t, std::deque<std::uint32_t>> waiting;
    for (const std::uint32_t i : right_items) {
        if (!left_of.contains(i)) {
            waiting[right.items[i].label].push_back(i);
        }
    }
    for (const std::uint32_t i : left_items) {
        const auto found = waiting.find(left.items[i].label);
        if (!right_of.contains(i) && found != waiting.end() && !found->second.empty()) {
            right_of.emplace(i, found->second.front());
            found->second.pop_front();
        }
    }
    return right_of;
}

bool has_other_order(const Items& base, const ItemMap& map) {
    std::uint32_t last = 0;
    for (const std::uint32_t i : base) {
        const auto found = map.find(i);
        if (found != map.end()) {
            if (found->second < last) {
                return true;
            }
            last = found->second;
        }
    }
    return false;
}

std::uint32_t item_in(const ItemMap& map, std::uint32_t item) {
    const auto found = map.find(item);
    return found == map.end() ? no_item : found->second;
}

/// One of the two sides that are merged.
struct Side {
    const TextItems& text;
    const Items& items;
    ItemMap of_base;
    ItemMap base_of;
    std::uint32_t MergeSlot::*place;
};

Side make_side(const TextItems& base, const Items& base_items, const TextItems& text, std::uint32_t group,
               std::uint32_t MergeSlot::*place) {
    const Items& items = text.items[group].items;
    Side side{text, items, match_items(base, base_items, text, items), {}, place};
    side.base_of = inverse(side.of_base);
    return side;
}

/// Items that both sides added: each new one of one side with its counterpart on the other.
ItemMap match_added(const Side& left, const Side& right) {
    const auto added = [](const Side& side) {
        Items items = side.items;
        std::erase_if(items, [&side](std::uint32_t i) { return side.base_of.contains(i); });
        return items;
    };
    return match_items(left.text, added(left), right.text, added(right));
}

/// Lists the items of the leading side in their order, and after each one the items that follow it only on the other side.
std::vector<MergeSlot> ordered_slots(const Side& leader, const Side& other) {
    const ItemMap other_of_added = match_added(leader, other);
    std::vector<MergeSlot> slots;
    std::unordered_map<std::uint32_t, std::size_t> slot_of_other;
    for (const std::uint32_t i : leader.items) {
        MergeSlot slot;
        slot.*leader.place = i;
        slot.base = item_in(leader.base_of, i);
        slot.*other.place =
            slot.base == no_item ? item_in(other_of_added, i) : item_in(other.of_base, slot.base);
        if (slot.*other.place != no_item) {
            slot_of_other.emplace(slot.*other.place, slots.size() + 1);
        }
        slots.push_back(slot);
    }
    std::vector<std::vector<MergeSlot>> behind(slots.size() + 1);
    std::size_t last = 0;
    for (const std::uint32_t i : other.items) {
        const auto found = slot_of_other.find(i);
        if (found != slot_of_other.end()) {
            last = found->second;
            continue;
        }
        MergeSlot slot;
        slot.*other.place = i;
        slot.base = item_in(other.base_of, i);
        behind[last].push_back(slot);
    }
    std::vector<MergeSlot> ordered = behind[0];
    for (std::size_t i = 0; i < slots.size(); ++i) {
        ordered.push_back(slots[i]);
        ordered.insert(ordered.end(), behind[i + 1].begin(), behind[i + 1].end());
    }
    return ordered;
}

} // namespace

std::vector<MergeSlot> merge_slots(const TextItems& base, std::uint32_t base_group, const TextItems& ours,
                                   std::uint32_t our_group, const TextItems& theirs,
                                   std::uint32_t their_group) {
    const Items& items = base.items[base_group].items;
    const Side left = make_side(base, items, ours, our_group, &MergeSlot::ours);
    const Side right = make_side(base, items, theirs, their_group, &MergeSlot::theirs);
    const bool they_lead = has_other_order(items, right.of_base) && !has_other_order(items, left.of_base);
    return they_lead ? ordered_slots(right, left) : ordered_slots(left, right);
}

} // namespace bk_parser
