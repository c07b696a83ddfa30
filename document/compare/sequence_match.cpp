#include "document/compare/sequence_match_impl.h"

#include <algorithm>
#include <cstddef>

namespace bk_parser {

namespace {

constexpr std::int64_t longest_script = 512; // time and memory grow with its square

/// A stretch of both sequences in which nothing is matched yet.
struct Stretch {
    std::uint32_t left_begin;
    std::uint32_t left_end;
    std::uint32_t right_begin;
    std::uint32_t right_end;

    bool is_empty() const noexcept { return left_begin == left_end || right_begin == right_end; }
};

class SequenceMatcher {
public:
    SequenceMatcher(std::span<const std::uint32_t> left, std::span<const std::uint32_t> right,
                    std::uint32_t kinds)
        : left_(left), right_(right), seen_(kinds) {}

    std::vector<MatchedPair> run() {
        pending_.push_back({0, size_of(left_), 0, size_of(right_)});
        while (!pending_.empty()) {
            Stretch stretch = pending_.back();
            pending_.pop_back();
            take_ends(stretch);
            if (!stretch.is_empty() && !split_at_unique(stretch)) {
                take_script(stretch);
            }
        }
        std::sort(matches_.begin(), matches_.end());
        return std::move(matches_);
    }

private:
    /// How often a kind occurs in a stretch, and where last.
    struct Seen {
        std::uint32_t left_count = 0;
        std::uint32_t right_count = 0;
        std::uint32_t left_place = 0;
    };

    static std::uint32_t size_of(std::span<const std::uint32_t> sequence) noexcept {
        return static_cast<std::uint32_t>(sequence.size());
    }

    void take_ends(Stretch& stretch) {
        while (!stretch.is_empty() && left_[stretch.left_begin] == right_[stretch.right_begin]) {
            matches_.emplace_back(stretch.left_begin++, stretch.right_begin++);
        }
        while (!stretch.is_empty() && left_[stretch.left_end - 1] == right_[stretch.right_end - 1]) {
            matches_.emplace_back(--stretch.left_end, --stretch.right_end);
        }
    }

    /// Matches the longest row of elements that occur once on each side. False when there is none.
    bool split_at_unique(const Stretch& stretch) {
        const std::vector<MatchedPair> row = longest_row(unique_pairs(stretch));
        std::uint32_t left = stretch.left_begin;
        std::uint32_t right = stretch.right_begin;
        for (const MatchedPair& pair : row) {
            pending_.push_back({left, pair.first, right, pair.second});
            matches_.push_back(pair);
            left = pair.first + 1;
            right = pair.second + 1;
        }
        if (!row.empty()) {
            pending_.push_back({left, stretch.left_end, right, stretch.right_end});
        }
        return !row.empty();
    }

    /// By ascending place on the right.
    std::vector<MatchedPair> unique_pairs(const Stretch& stretch) {
        for (std::uint32_t i = stretch.left_begin; i != stretch.left_end; ++i) {
            Seen& seen = seen_[left_[i]];
            ++seen.left_count;
            seen.left_place = i;
        }
        for (std::uint32_t i = stretch.right_begin; i != stretch.right_end; ++i) {
            ++seen_[right_[i]].right_count;
        }
        std::vector<MatchedPair> pairs;
        for (std::uint32_t i = stretch.right_begin; i != stretch.right_end; ++i) {
            const Seen& seen = seen_[right_[i]];
            if (seen.left_count == 1 && seen.right_count == 1) {
                pairs.emplace_back(seen.left_place, i);
            }
        }
        for (std::uint32_t i = stretch.left_begin; i != stretch.left_end; ++i) {
            seen_[left_[i]] = Seen();
        }
        for (std::uint32_t i = stretch.right_begin; i != stretch.right_end; ++i) {
            seen_[right_[i]] = Seen();
        }
        return pairs;
    }

    /// The greedy search for a shortest edit script: computes for each number of edits the furthest place on each diagonal.
    void take_script(const Stretch& stretch) {
        const std::int64_t left_size = stretch.left_end - stretch.left_begin;
        const std::int64_t right_size = stretch.right_end - stretch.right_begin;
        const std::int64_t most = std::min(left_size + right_size, longest_script);
        // For each number of edits, the furthest place on the left on each diagonal.
        std::vector<std::vector<std::int64_t>> rounds;
        std::vector<std::int64_t> furthest(static_cast<std::size_t>(2 * most + 3), 0);
        const auto at = [&](std::int64_t diagonal) -> std::int64_t& {
            return furthest[static_cast<std::size_t>(diagonal + most + 1)];
        };
        for (std::int64_t edits = 0; edits <= most; ++edits) {
            for (std::int64_t diagonal = -edits; diagonal <= edits; diagonal += 2) {
                std::int64_t x = edits == 0                       ? 0
                                 : goes_down(at, edits, diagonal) ? at(diagonal + 1)
                                                                  : at(diagonal - 1) + 1;
                std::int64_t y = x - diagonal;
                while (x < left_size && y < right_size && y >= 0 && is_same(stretch, x, y)) {
                    ++x;
                    ++y;
                }
                at(diagonal) = x;
                if (x >= left_size && y >= right_size) {
                    walk_back(stretch, rounds, x, y);
                    return;
                }
            }
            rounds.emplace_back(furthest.begin() + (most + 1 - edits), furthest.begin() + (most + 2 + edits));
        }
    }

    template <class At>
    static bool goes_down(const At& at, std::int64_t edits, std::int64_t diagonal) {
        return diagonal == -edits || (diagonal != edits && at(diagonal - 1) < at(diagonal + 1));
    }

    bool is_same(const Stretch& stretch, std::int64_t x, std::int64_t y) const noexcept {
        return left_[stretch.left_begin + static_cast<std::size_t>(x)] ==
               right_[stretch.right_begin + static_cast<std::size_t>(y)];
    }

    void walk_back(const Stretch& stretch, const std::vector<std::vector<std::int64_t>>& rounds,
                   std::int64_t x, std::int64_t y) {
        for (auto edits = static_cast<std::int64_t>(rounds.size()); edits > 0; --edits) {
            const std::vector<std::int64_t>& round = rounds[static_cast<std::size_t>(edits - 1)];
            const auto at = [&](std::int64_t diagonal) {
                const std::int64_t place = diagonal + edits - 1;
                return place < 0 || place >= static_cast<std::int64_t>(round.size())
                           ? std::int64_t{-1}
                           : round[static_cast<std::size_t>(place)];
            };
            const std::int64_t diagonal = x - y;
            const bool down = goes_down(at, edits, diagonal);
            const std::int64_t before = down ? at(diagonal + 1) : at(diagonal - 1);
            const std::int64_t start = down ? before : before + 1;
            take_run(stretch, start, x, y);
            x = before;
            y = before - (down ? diagonal + 1 : diagonal - 1);
        }
        take_run(stretch, 0, x, y);
    }

    /// The equal elements that end at (x, y) and begin at `start` on the left.
    void take_run(const Stretch& stretch, std::int64_t start, std::int64_t x, std::int64_t y) {
        while (x > start) {
            matches_.emplace_back(stretch.left_begin + static_cast<std::uint32_t>(--x),
                                  stretch.right_begin + static_cast<std::uint32_t>(--y));
        }
    }

    std::span<const std::uint32_t> left_;
    std::span<const std::uint32_t> right_;
    std::vector<Seen> seen_;
    std::vector<Stretch> pending_;
    std::vector<MatchedPair> matches_;
};

} // namespace

std::vector<MatchedPair> longest_row(const std::vector<MatchedPair>& pairs) {
    // The last element of the shortest rows is kept.
    constexpr std::size_t none = static_cast<std::size_t>(-1);
    std::vector<std::size_t> row_ends;
    std::vector<std::size_t> before(pairs.size(), none);
    for (std::size_t i = 0; i < pairs.size(); ++i) {
        const auto place = std::lower_bound(
            row_ends.begin(), row_ends.end(), pairs[i].first,
            [&pairs](std::size_t end, std::uint32_t left) { return pairs[end].first < left; });
        before[i] = place == row_ends.begin() ? none : place[-1];
        if (place == row_ends.end()) {
            row_ends.push_back(i);
        } else {
            *place = i;
        }
    }
    std::vector<MatchedPair> row;
    for (std::size_t i = row_ends.empty() ? none : row_ends.back(); i != none; i = before[i]) {
        row.push_back(pairs[i]);
    }
    std::reverse(row.begin(), row.end());
    return row;
}

std::vector<MatchedPair> match_sequences(std::span<const std::uint32_t> left,
                                         std::span<const std::uint32_t> right, std::uint32_t kinds) {
    return SequenceMatcher(left, right, kinds).run();
}

} // namespace bk_parser
