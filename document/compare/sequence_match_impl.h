#pragma once

#include <cstdint>
#include <span>
#include <utility>
#include <vector>

namespace bk_parser {

/// Two matched places of two sequences.
using MatchedPair = std::pair<std::uint32_t, std::uint32_t>;

/// Matches equal elements of two sequences in order: first those at both ends, then those that are unique on both sides, and in
/// between along a shortest edit script. A stretch with a script longer than a bound is left unmatched, so that the time stays
/// near-linear. Matches ascend on both sides. Elements are numbers below `kinds`.
std::vector<MatchedPair> match_sequences(std::span<const std::uint32_t> left,
                                         std::span<const std::uint32_t> right, std::uint32_t kinds);

/// Selects, from pairs that ascend on the right, a longest sequence that also ascends on the left.
std::vector<MatchedPair> longest_row(const std::vector<MatchedPair>& pairs);

} // namespace bk_parser
