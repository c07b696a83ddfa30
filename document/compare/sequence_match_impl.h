#pragma once

#include <cstdint>
#include <span>
#include <utility>
#include <vector>

namespace bk_parser {

/// Places of two sequences that are matched.
using MatchedPair = std::pair<std::uint32_t, std::uint32_t>;

/// Matches equal elements of two sequences in order: first those at both ends, then those that are unique on both sides, and
/// between these by a shortest edit script. Matches nothing in a stretch whose script is longer than a bound, so that the time stays
/// near-linear. The matches ascend on both sides. Elements are numbers below `kinds`.
std::vector<MatchedPair> match_sequences(std::span<const std::uint32_t> left,
                                         std::span<const std::uint32_t> right, std::uint32_t kinds);

/// From pairs that ascend on the right, selects the longest sequence that also ascends on the left.
std::vector<MatchedPair> longest_row(const std::vector<MatchedPair>& pairs);

} // namespace bk_parser
