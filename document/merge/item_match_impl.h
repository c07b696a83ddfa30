#pragma once

#include "document/merge/text_items_impl.h"

#include <cstdint>
#include <vector>

namespace bk_parser {

inline constexpr std::uint32_t no_item = 0xFFFFFFFFu;

/// One item in each of the three texts, or no_item where a text does not have it.
struct MergeSlot {
    std::uint32_t base = no_item;
    std::uint32_t ours = no_item;
    std::uint32_t theirs = no_item;
};

/// Lists the items of a group of three texts, each once, in the order of the merged text.
std::vector<MergeSlot> merge_slots(const TextItems& base, std::uint32_t base_group, const TextItems& ours,
                                   std::uint32_t our_group, const TextItems& theirs,
                                   std::uint32_t their_group);

} // namespace bk_parser
