#include "document/compare.h"

#include "document/compare/sibling_match_impl.h"
#include "document/compare/tree_index_impl.h"
#include "document/compare/value_equal_impl.h"

#include <algorithm>
#include <unordered_map>
#include <utility>

namespace bk_parser {

namespace {

using Kind = TreeChange::Kind;

/// Something that is still to be compared or reported. The walk keeps these tasks in a list instead of recursing.
struct Task {
    enum class What { change, entries, groups };
    What what = What::change;
    TreeChange change;      // for a change to report
    std::uint32_t left = 0; // nodes of the entries, or of the first entries of groups
    std::uint32_t right = 0;
    const ParserGroup* left_group = nullptr;
    const ParserGroup* right_group = nullptr;
};

class TreeComparison {
public:
    TreeComparison(const ParserGroup& before, const ParserGroup& after, const CompareOptions& options)
        : options_(options), equality_(options), left_(before, options.ignore_order),
          right_(after, options.ignore_order) {
        tasks_.push_back(groups_task(&before, 0, &after, 0));
    }

    std::vector<TreeChange> run() {
        while (!tasks_.empty()) {
            const Task task = tasks_.back();
            tasks_.pop_back();
            if (task.what == Task::What::change) {
                changes_.push_back(task.change);
                continue;
            }
            const std::size_t first = tasks_.size();
            if (task.what == Task::What::groups) {
                compare_groups(task);
            } else {
                compare_entries(task.left, task.right);
            }
            std::reverse(tasks_.begin() + static_cast<std::ptrdiff_t>(first), tasks_.end());
        }
        find_moves_between_groups();
        return std::move(changes_);
    }

private:
    static Task groups_task(const ParserGroup* left_group, std::uint32_t left, const ParserGroup* right_group,
                            std::uint32_t right) {
        return {Task::What::groups, {}, left, right, left_group, right_group};
    }

    void tell(Kind kind, const ParserEntry* before, const ParserEntry* after,
              unsigned int value_before = TreeChange::no_value,
              unsigned int value_after = TreeChange::no_value) {
        tasks_.push_back(
            {Task::What::change, {kind, before, after, value_before, value_after}, 0, 0, nullptr, nullptr});
    }

    void compare_groups(const Task& task) {
        const std::vector<std::uint32_t> left = left_.entries_of(*task.left_group, task.left);
        const std::vector<std::uint32_t> right = right_.entries_of(*task.right_group, task.right);
        const SiblingMatch match = match_siblings(left_, left, right_, right);
        std::uint32_t next = 0; // next node on the left that is not reported
        for (std::uint32_t i = 0; i < right.size(); ++i) {
            const std::uint32_t other = match.left_of[i];
            if (other == unmatched) {
                tell(Kind::added, nullptr, right_[right[i]].entry);
                continue;
            }
            if (!match.is_moved[i]) {
                tell_removed(match, left, next, other);
                next = other + 1;
            } else if (!options_.ignore_order) {
                tell(Kind::moved, left_[left[other]].entry, right_[right[i]].entry);
            }
            take_pair(left[other], right[i]);
        }
        tell_removed(match, left, next, static_cast<std::uint32_t>(left.size()));
    }

    void tell_removed(const SiblingMatch& match, const std::vector<std::uint32_t>& left, std::uint32_t begin,
                      std::uint32_t end) {
        for (; begin < end; ++begin) {
            if (match.right_of[begin] == unmatched) {
                tell(Kind::removed, left_[left[begin]].entry, nullptr);
            }
        }
    }

    void take_pair(std::uint32_t left, std::uint32_t right) {
        if (left_[left].hash != right_[right].hash) {
            tasks_.push_back({Task::What::entries, {}, left, right, nullptr, nullptr});
        }
    }

    void compare_entries(std::uint32_t left_node, std::uint32_t right_node) {
        const ParserEntry& left = *left_[left_node].entry;
        const ParserEntry& right = *right_[right_node].entry;
        if (!(left.get_name() == right.get_name())) {
            tell(Kind::renamed, &left, &right);
        }
        if (!have_same_heads(left, right)) {
            tell(Kind::head, &left, &right);
        }
        compare_values(left, right);
        compare_inner(left, left_node + 1, right, right_node + 1);
    }

    void compare_values(const ParserEntry& left, const ParserEntry& right) {
        const unsigned int left_count = left.get_value_count();
        const unsigned int right_count = right.get_value_count();
        if (left_count == right_count) {
            compare_range(left, 0, left_count, right, 0, right_count);
            return;
        }
        unsigned int left_begin = 0;
        unsigned int right_begin = 0;
        for (const auto& [left_end, right_end] : matched_values(left, right)) {
            compare_range(left, left_begin, left_end, right, right_begin, right_end);
            left_begin = left_end + 1;
            right_begin = right_end + 1;
        }
        compare_range(left, left_begin, left_count, right, right_begin, right_count);
    }

    static std::vector<MatchedPair> matched_values(const ParserEntry& left, const ParserEntry& right) {
        std::unordered_map<std::uint64_t, std::uint32_t> kinds;
        const auto kinds_of = [&kinds](const ParserEntry& entry) {
            std::vector<std::uint32_t> values;
            for (unsigned int i = 0; i < entry.get_value_count(); ++i) {
                const auto next = static_cast<std::uint32_t>(kinds.size());
                values.push_back(kinds.emplace(hash_of_value(entry, i), next).first->second);
            }
            return values;
        };
        const std::vector<std::uint32_t> ours = kinds_of(left);
        const std::vector<std::uint32_t> theirs = kinds_of(right);
        return match_sequences(ours, theirs, static_cast<std::uint32_t>(kinds.size()));
    }

    /// Compares the values of two entries one by one, and reports those that only one entry has.
    void compare_range(const ParserEntry& left, unsigned int i, unsigned int left_end,
                       const ParserEntry& right, unsigned int k, unsigned int right_end) {
        for (; i < left_end && k < right_end; ++i, ++k) {
            if (!equality_.are_equal(left, i, right, k)) {
                tell(Kind::value, &left, &right, i, k);
            }
        }
        for (; i < left_end; ++i) {
            tell(Kind::value, &left, &right, i, TreeChange::no_value);
        }
        for (; k < right_end; ++k) {
            tell(Kind::value, &left, &right, TreeChange::no_value, k);
        }
    }

    /// Compares the first group of one entry with the first group of the other, and so on. Groups without a counterpart were reported
    /// as values.
    void compare_inner(const ParserEntry& left, std::uint32_t left_node, const ParserEntry& right,
                       std::uint32_t right_node) {
        unsigned int i = 0;
        unsigned int k = 0;
        while (next_group(left, i) && next_group(right, k)) {
            const ParserGroup* const ours = left.get_group(i++);
            const ParserGroup* const theirs = right.get_group(k++);
            tasks_.push_back(groups_task(ours, left_node, theirs, right_node));
            left_node = left_.node_after(*ours, left_node);
            right_node = right_.node_after(*theirs, right_node);
        }
    }

    static bool next_group(const ParserEntry& entry, unsigned int& i) {
        while (i < entry.get_value_count() && !entry.is_value_group(i)) {
            ++i;
        }
        return i < entry.get_value_count();
    }

    static bool holds_entries(const ParserEntry& entry) {
        unsigned int i = 0;
        return next_group(entry, i) && entry.get_group(i)->get_entries().get_count() != 0;
    }

    /// Reports an entry that was removed in one group and added unchanged in another one as moved, when no other one is equal to it.
    void find_moves_between_groups() {
        std::unordered_map<const ParserEntry*, std::uint64_t> hashes;
        std::unordered_map<std::uint64_t, std::pair<std::size_t, std::size_t>> counts; // removed and added
        std::unordered_map<std::uint64_t, std::size_t> removed_at;
        collect_hashes(hashes);
        for (std::size_t i = 0; i < changes_.size(); ++i) {
            const auto found = hashes.find(changed_entry(changes_[i]));
            if (found != hashes.end()) {
                const bool is_removed = changes_[i].kind == Kind::removed;
                ++(is_removed ? counts[found->second].first : counts[found->second].second);
                if (is_removed) {
                    removed_at[found->second] = i;
                }
            }
        }
        std::vector<bool> is_told(changes_.size(), false);
        for (TreeChange& change : changes_) {
            const auto found = hashes.find(change.kind == Kind::added ? change.after : nullptr);
            if (found != hashes.end() && counts[found->second] == std::pair<std::size_t, std::size_t>(1, 1)) {
                const std::size_t removed = removed_at[found->second];
                change.kind = Kind::moved;
                change.before = changes_[removed].before;
                is_told[removed] = true;
            }
        }
        std::size_t kept = 0;
        for (std::size_t i = 0; i < changes_.size(); ++i) {
            if (!is_told[i]) {
                changes_[kept++] = changes_[i];
            }
        }
        changes_.resize(kept);
    }

    static const ParserEntry* changed_entry(const TreeChange& change) noexcept {
        return change.kind == Kind::removed ? change.before
               : change.kind == Kind::added ? change.after
                                            : nullptr;
    }

    /// Entries with groups that were added or removed.
    void collect_hashes(std::unordered_map<const ParserEntry*, std::uint64_t>& hashes) const {
        for (const TreeChange& change : changes_) {
            const ParserEntry* const entry = changed_entry(change);
            if (entry != nullptr && holds_entries(*entry)) {
                hashes.emplace(entry, 0);
            }
        }
        if (hashes.empty()) {
            return;
        }
        for (const TreeIndex* const index : {&left_, &right_}) {
            for (std::uint32_t i = 0; i < index->size(); ++i) {
                const auto found = hashes.find((*index)[i].entry);
                if (found != hashes.end()) {
                    found->second = (*index)[i].hash;
                }
            }
        }
    }

    CompareOptions options_;
    ValueEquality equality_;
    TreeIndex left_;
    TreeIndex right_;
    std::vector<Task> tasks_; // the last one is next
    std::vector<TreeChange> changes_;
};

} // namespace

std::vector<TreeChange> compare_trees(const ParserGroup& before, const ParserGroup& after,
                                      const CompareOptions& options) {
    return TreeComparison(before, after, options).run();
}

} // namespace bk_parser
