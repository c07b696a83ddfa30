#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace bkdoc {

/// The candidate closest to a word by optimal string alignment distance: insertions, deletions, substitutions and swaps of
/// neighbours. The distance may be at most a third of the word's length, but always 1. Empty when no candidate is close enough.
std::string_view closest(std::string_view word, const std::vector<std::string_view>& candidates);

/// "; did you mean '<candidate>'?", or nothing.
std::string did_you_mean(std::string_view word, const std::vector<std::string_view>& candidates);

} // namespace bkdoc
