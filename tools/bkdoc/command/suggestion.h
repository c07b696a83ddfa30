#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace bkdoc {

/// The candidate that was most likely meant by a word: the one with the smallest edit distance (insertions, deletions,
/// substitutions and swaps of neighbours: the optimal string alignment distance), at most a third of the word's length
/// and at least 1. Empty when there is none.
std::string_view closest(std::string_view word, const std::vector<std::string_view>& candidates);

/// "; did you mean '<candidate>'?", or nothing.
std::string did_you_mean(std::string_view word, const std::vector<std::string_view>& candidates);

} // namespace bkdoc
