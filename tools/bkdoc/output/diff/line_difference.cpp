#include "output/diff/line_difference.h"

#include <algorithm>
#include <cstdint>
#include <unordered_map>

namespace bkdoc {

namespace {

constexpr std::size_t most_steps = 256; // lines taken out or in before the best way so far is taken

using Numbers = std::vector<std::uint32_t>;

/// Equal lines have equal numbers.
class LineNumbers {
public:
    Numbers of(const std::vector<std::string_view>& lines) {
        Numbers numbers;
        numbers.reserve(lines.size());
        for (const std::string_view line : lines) {
            numbers.push_back(
                known_.try_emplace(line, static_cast<std::uint32_t>(known_.size())).first->second);
        }
        return numbers;
    }

private:
    std::unordered_map<std::string_view, std::uint32_t> known_;
};

/// Looks for the way from the begin of both texts to their ends with the fewest lines taken out and in (the greedy
/// algorithm of Myers). After most_steps it goes the way that came farthest, and looks on from there.
class Comparer {
public:
    Comparer(const Numbers& before, const Numbers& after) : before_(before), after_(after) {}

    std::vector<LineChange> run() {
        while (old_at_ < before_.size() || new_at_ < after_.size()) {
            search();
        }
        return std::move(changes_);
    }

private:
    /// How far the first text is passed on a diagonal; the second is passed `diagonal` lines less.
    using Reach = std::vector<std::ptrdiff_t>;

    std::ptrdiff_t follow_equal(std::ptrdiff_t x, std::ptrdiff_t y) const {
        while (x < old_left() && y < new_left() &&
               before_[old_at_ + static_cast<std::size_t>(x)] ==
                   after_[new_at_ + static_cast<std::size_t>(y)]) {
            ++x;
            ++y;
        }
        return x;
    }

    std::ptrdiff_t old_left() const { return static_cast<std::ptrdiff_t>(before_.size() - old_at_); }
    std::ptrdiff_t new_left() const { return static_cast<std::ptrdiff_t>(after_.size() - new_at_); }

    /// The reach of step d - 1 on a diagonal from -(d - 1) to d - 1.
    static std::ptrdiff_t at(const Reach& reach, std::ptrdiff_t diagonal) {
        const auto middle = static_cast<std::ptrdiff_t>(reach.size() / 2);
        const std::ptrdiff_t i = diagonal + middle;
        return i < 0 || i >= static_cast<std::ptrdiff_t>(reach.size()) ? none
                                                                       : reach[static_cast<std::size_t>(i)];
    }

    /// Where a step comes to on a diagonal before it follows equal lines.
    std::ptrdiff_t step_to(const Reach& reach, std::ptrdiff_t diagonal) const {
        const std::ptrdiff_t taken_in = at(reach, diagonal + 1); // a line of the second text
        const std::ptrdiff_t taken_out = at(reach, diagonal - 1);
        const std::ptrdiff_t out = taken_out == none || taken_out >= old_left() ? none : taken_out + 1;
        const bool may_take_in = taken_in != none && taken_in - diagonal <= new_left();
        return std::max(out, may_take_in ? taken_in : none);
    }

    void search() {
        std::vector<Reach> reaches{{follow_equal(0, 0)}};
        for (std::ptrdiff_t d = 0;; ++d) {
            std::ptrdiff_t best = -d;
            for (std::ptrdiff_t k = -d; k <= d; k += 2) {
                const std::ptrdiff_t x = at(reaches.back(), k);
                if (x == old_left() && x - k == new_left()) {
                    take(reaches, k);
                    return;
                }
                if (x != none &&
                    (at(reaches.back(), best) == none || 2 * x - k > 2 * at(reaches.back(), best) - best)) {
                    best = k;
                }
            }
            if (static_cast<std::size_t>(d) == most_steps) {
                take(reaches, best);
                return;
            }
            Reach next(static_cast<std::size_t>(2 * d + 3), none);
            for (std::ptrdiff_t k = -d - 1; k <= d + 1; k += 2) {
                const std::ptrdiff_t x = step_to(reaches.back(), k);
                next[static_cast<std::size_t>(k + d + 1)] = x == none ? none : follow_equal(x, x - k);
            }
            reaches.push_back(std::move(next));
        }
    }

    /// Goes the way back that led to the end of the last step on this diagonal, and notes its changes.
    void take(const std::vector<Reach>& reaches, std::ptrdiff_t diagonal) {
        const std::ptrdiff_t end_x = at(reaches.back(), diagonal);
        const std::ptrdiff_t end_y = end_x - diagonal;
        std::vector<LineChange> found; // last first
        for (std::size_t d = reaches.size() - 1; d > 0; --d) {
            const Reach& reach = reaches[d - 1];
            const std::ptrdiff_t x = step_to(reach, diagonal);
            const std::ptrdiff_t taken_out = at(reach, diagonal - 1);
            const bool is_out = taken_out != none && taken_out < old_left() && taken_out + 1 == x;
            const std::ptrdiff_t y = x - diagonal;
            found.push_back({old_at_ + static_cast<std::size_t>(is_out ? x - 1 : x),
                             old_at_ + static_cast<std::size_t>(x),
                             new_at_ + static_cast<std::size_t>(is_out ? y : y - 1),
                             new_at_ + static_cast<std::size_t>(y)});
            diagonal += is_out ? -1 : 1;
        }
        std::reverse(found.begin(), found.end());
        for (const auto& change : found) {
            add(change);
        }
        old_at_ += static_cast<std::size_t>(end_x);
        new_at_ += static_cast<std::size_t>(end_y);
    }

    void add(const LineChange& change) {
        if (!changes_.empty() && changes_.back().old_end == change.old_begin &&
            changes_.back().new_end == change.new_begin) {
            changes_.back().old_end = change.old_end;
            changes_.back().new_end = change.new_end;
        } else {
            changes_.push_back(change);
        }
    }

    static constexpr std::ptrdiff_t none = -1;

    const Numbers& before_;
    const Numbers& after_;
    std::size_t old_at_ = 0;
    std::size_t new_at_ = 0;
    std::vector<LineChange> changes_;
};

} // namespace

std::vector<std::string_view> lines_of(std::string_view text) {
    std::vector<std::string_view> lines;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size() - 1) + 1;
        lines.push_back(text.substr(0, end));
        text.remove_prefix(end);
    }
    return lines;
}

std::vector<LineChange> line_changes(const std::vector<std::string_view>& before,
                                     const std::vector<std::string_view>& after) {
    LineNumbers numbers;
    const Numbers old_numbers = numbers.of(before);
    const Numbers new_numbers = numbers.of(after);
    return Comparer(old_numbers, new_numbers).run();
}

} // namespace bkdoc
