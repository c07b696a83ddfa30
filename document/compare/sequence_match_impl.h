#pragma once

#include <cstdint>
#include <span>
#include <utility>
#include <vector>

namespace bk_parser {

/// Places of two sequences that are matched.
using MatchedPair = std::pair<std::uint32_t, std::uint32_t>;

/// Matches equal elements of two sequences in their order: what is the same at both ends, then the elements that are the
/// only ones of their kind on both sides, and between these a shortest edit script. Nothing is matched in a
/// stretch whose script is longer than a bound, so that the time stays near-linear. Ascending on both sides. Elements
/// are numbers below `kinds`.
std::vector<MatchedPair> match_sequences(std::span<const std::uint32_t> left,
                                         std::span<const std::uint32_t> right, std::uint32_t kinds);

/// Of pairs that ascend on the right, the longest row that ascends on the left, too.
std::vector<MatchedPair> longest_row(const std::vector<MatchedPair>& pairs);

} // namespace bk_parser
