#pragma once

#include "document/compare/sequence_match_impl.h"
#include "document/compare/tree_index_impl.h"

#include <cstdint>
#include <vector>

namespace bk_parser {

inline constexpr std::uint32_t unmatched = 0xFFFFFFFFu;

/// Matched entries of two groups, by their positions in the given lists.
struct SiblingMatch {
    std::vector<std::uint32_t> right_of; // match of each entry on the left
    std::vector<std::uint32_t> left_of;  // of each on the right
    std::vector<bool> is_moved;          // for each entry on the right: its order among the matches changed
};

/// Matches the entries of two groups, given by their nodes, as compare_trees says.
SiblingMatch match_siblings(const TreeIndex& left, const std::vector<std::uint32_t>& left_nodes,
                            const TreeIndex& right, const std::vector<std::uint32_t>& right_nodes);

} // namespace bk_parser
