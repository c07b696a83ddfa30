#include "command/suggestion.h"

#include <algorithm>
#include <cstddef>

namespace bkdoc {

namespace {

constexpr std::size_t shortest_word = 3; // a word of two letters is too close to every other one
constexpr std::size_t longest_word = 40; // a longer word is not a misspelled name

std::size_t edit_distance(std::string_view a, std::string_view b) {
    std::vector<std::size_t> before_last(b.size() + 1);
    std::vector<std::size_t> last(b.size() + 1);
    std::vector<std::size_t> current(b.size() + 1);
    for (std::size_t j = 0; j <= b.size(); ++j) {
        last[j] = j;
    }
    for (std::size_t i = 1; i <= a.size(); ++i) {
        current[0] = i;
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const std::size_t substituted = last[j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1);
            current[j] = std::min({last[j] + 1, current[j - 1] + 1, substituted});
            if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1]) {
                current[j] = std::min(current[j], before_last[j - 2] + 1);
            }
        }
        before_last.swap(last);
        last.swap(current);
    }
    return last[b.size()];
}

} // namespace

std::string_view closest(std::string_view word, const std::vector<std::string_view>& candidates) {
    if (word.size() < shortest_word || word.size() > longest_word) {
        return {};
    }
    std::string_view best;
    std::size_t best_distance = std::max<std::size_t>(1, word.size() / 3) + 1;
    for (const std::string_view candidate : candidates) {
        const std::size_t distance = edit_distance(word, candidate);
        if (distance < best_distance) {
            best = candidate;
            best_distance = distance;
        }
    }
    return best;
}

std::string did_you_mean(std::string_view word, const std::vector<std::string_view>& candidates) {
    const std::string_view meant = closest(word, candidates);
    return meant.empty() ? std::string() : "; did you mean '" + std::string(meant) + "'?";
}

} // namespace bkdoc
