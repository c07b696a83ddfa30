#include "document/compare/sibling_match_impl.h"

#include "document/sources/byte_hash_impl.h"

#include <algorithm>
#include <unordered_map>

namespace bk_parser {

namespace {

constexpr std::size_t most_pairs = 4096;    // how many pairs of entries are compared for similarity
constexpr std::uint32_t most_features = 64; // of an entry, at most
constexpr double least_likeness = 0.5;      // for entries with the same name
constexpr double least_renamed = 0.6;       // for entries with different names

using Places = std::vector<std::uint32_t>;

std::uint64_t name_hash(const ParserEntry& entry) {
    return ByteHash::of(entry.get_name().get_view());
}

/// The hash of name, template and first string.
std::uint64_t label_hash(const ParserEntry& entry) {
    std::uint64_t hash = mixed(name_hash(entry), ByteHash::of(entry.get_template().get_view()));
    if (entry.has_value() && entry.get_value_type(0) == ParserValue::TYPE_STRING) {
        hash = mixed(hash, ByteHash::of(entry.get_string(0).get_view()));
    }
    return hash;
}

/// The features by which two entries are compared for similarity: sorted hashes of their values and of the entries in them.
class Features {
public:
    Features(const TreeIndex& index, std::uint32_t node) {
        const ParserEntry& entry = *index[node].entry;
        for (unsigned int i = 0; i < std::min(entry.get_value_count(), most_features); ++i) {
            if (!entry.is_value_group(i)) {
                hashes_.push_back(hash_of_value(entry, i));
            }
        }
        const std::uint32_t end = index[node].end;
        for (std::uint32_t child = node + 1; child < end && hashes_.size() < most_features;
             child = index[child].end) {
            hashes_.push_back(index[child].hash);
            hashes_.push_back(label_hash(*index[child].entry));
        }
        std::sort(hashes_.begin(), hashes_.end());
    }

    std::size_t size() const noexcept { return hashes_.size(); }

    /// From 0 to 1.
    double likeness(const Features& other) const {
        std::size_t shared = 0;
        auto ours = hashes_.begin();
        auto theirs = other.hashes_.begin();
        while (ours != hashes_.end() && theirs != other.hashes_.end()) {
            if (*ours == *theirs) {
                ++shared;
                ++ours;
                ++theirs;
            } else if (*ours < *theirs) {
                ++ours;
            } else {
                ++theirs;
            }
        }
        const std::size_t larger = std::max(size(), other.size());
        return larger == 0 ? 1.0 : static_cast<double>(shared) / static_cast<double>(larger);
    }

private:
    std::vector<std::uint64_t> hashes_;
};

class SiblingMatcher {
public:
    SiblingMatcher(const TreeIndex& left, const Places& left_nodes, const TreeIndex& right,
                   const Places& right_nodes)
        : left_(left), right_(right), left_nodes_(left_nodes), right_nodes_(right_nodes) {
        match_.right_of.assign(left_nodes.size(), unmatched);
        match_.left_of.assign(right_nodes.size(), unmatched);
        match_.is_moved.assign(right_nodes.size(), false);
    }

    SiblingMatch run() {
        take_ends();
        match_equal();
        match_groups([](const TreeIndex::Node& node) { return node.hash; }, 0.0);
        match_groups([](const TreeIndex::Node& node) { return label_hash(*node.entry); }, 0.0);
        match_groups([](const TreeIndex::Node& node) { return name_hash(*node.entry); }, least_likeness);
        match_groups([](const TreeIndex::Node& node) { return node.body; }, 0.0);
        match_groups([](const TreeIndex::Node&) { return std::uint64_t{0}; }, least_renamed);
        find_moved();
        return std::move(match_);
    }

private:
    std::uint32_t left_size() const noexcept { return static_cast<std::uint32_t>(left_nodes_.size()); }
    std::uint32_t right_size() const noexcept { return static_cast<std::uint32_t>(right_nodes_.size()); }
    const TreeIndex::Node& left_node(std::uint32_t i) const noexcept { return left_[left_nodes_[i]]; }
    const TreeIndex::Node& right_node(std::uint32_t i) const noexcept { return right_[right_nodes_[i]]; }

    void pair(std::uint32_t left, std::uint32_t right) noexcept {
        match_.right_of[left] = right;
        match_.left_of[right] = left;
    }

    /// Matches the equal entries at both ends, which usually are nearly all.
    void take_ends() {
        std::uint32_t begin = 0;
        std::uint32_t left_end = left_size();
        std::uint32_t right_end = right_size();
        while (begin < std::min(left_end, right_end) && left_node(begin).hash == right_node(begin).hash) {
            pair(begin, begin);
            ++begin;
        }
        while (std::min(left_end, right_end) > begin &&
               left_node(left_end - 1).hash == right_node(right_end - 1).hash) {
            pair(--left_end, --right_end);
        }
        for (std::uint32_t i = begin; i < left_end; ++i) {
            left_rest_.push_back(i);
        }
        for (std::uint32_t i = begin; i < right_end; ++i) {
            right_rest_.push_back(i);
        }
    }

    void match_equal() {
        if (left_rest_.empty() || right_rest_.empty()) {
            return;
        }
        std::unordered_map<std::uint64_t, std::uint32_t> kinds;
        const auto kind_of = [&kinds](std::uint64_t hash) {
            return kinds.emplace(hash, static_cast<std::uint32_t>(kinds.size())).first->second;
        };
        Places left;
        Places right;
        for (const std::uint32_t i : left_rest_) {
            left.push_back(kind_of(left_node(i).hash));
        }
        for (const std::uint32_t i : right_rest_) {
            right.push_back(kind_of(right_node(i).hash));
        }
        for (const auto& [ours, theirs] :
             match_sequences(left, right, static_cast<std::uint32_t>(kinds.size()))) {
            pair(left_rest_[ours], right_rest_[theirs]);
        }
        match_between();
        drop_matched();
    }

    /// Matches entries between equal ones when both sides have as many, with the same labels: they were changed in place.
    void match_between() {
        std::uint32_t left = left_rest_.front();
        std::uint32_t right = right_rest_.front();
        const std::uint32_t left_end = left_rest_.back() + 1;
        const std::uint32_t right_end = right_rest_.back() + 1;
        while (left < left_end && right < right_end) {
            const std::uint32_t left_begin = left;
            const std::uint32_t right_begin = right;
            while (left < left_end && match_.right_of[left] == unmatched) {
                ++left;
            }
            while (right < right_end && match_.left_of[right] == unmatched) {
                ++right;
            }
            if (left - left_begin == right - right_begin && have_same_labels(left_begin, left, right_begin)) {
                for (std::uint32_t i = left_begin; i < left; ++i) {
                    pair(i, right_begin + (i - left_begin));
                }
            }
            ++left;
            ++right;
        }
    }

    bool have_same_labels(std::uint32_t left, std::uint32_t left_end, std::uint32_t right) const {
        for (; left < left_end; ++left, ++right) {
            if (label_hash(*left_node(left).entry) != label_hash(*right_node(right).entry)) {
                return false;
            }
        }
        return true;
    }

    void drop_matched() {
        std::erase_if(left_rest_, [this](std::uint32_t i) { return match_.right_of[i] != unmatched; });
        std::erase_if(right_rest_, [this](std::uint32_t i) { return match_.left_of[i] != unmatched; });
    }

    /// Matches entries with a common hash: by similarity, or each with the next one when similarity is not asked for or there are too
    /// many.
    template <class Hash>
    void match_groups(const Hash& hash, double least) {
        if (left_rest_.empty() || right_rest_.empty()) {
            return;
        }
        std::unordered_map<std::uint64_t, Places> right;
        for (const std::uint32_t i : right_rest_) {
            right[hash(right_node(i))].push_back(i);
        }
        std::unordered_map<std::uint64_t, Places> left;
        std::vector<std::uint64_t>
            order; // of the hashes, by their first place: results are the same on every machine
        for (const std::uint32_t i : left_rest_) {
            const std::uint64_t key = hash(left_node(i));
            if (right.contains(key)) {
                Places& places = left[key];
                if (places.empty()) {
                    order.push_back(key);
                }
                places.push_back(i);
            }
        }
        for (const std::uint64_t key : order) {
            match_group(left[key], right[key], least);
        }
        drop_matched();
    }

    void match_group(const Places& left, const Places& right, double least) {
        const bool is_only_name = left.size() == 1 && right.size() == 1 && least < least_renamed;
        if (is_only_name) {
            pair(left[0], right[0]);
        } else if (left.size() * right.size() <= most_pairs) {
            match_alike(left, right, least);
        } else if (least < least_renamed) {
            for (std::size_t i = 0; i < std::min(left.size(), right.size()); ++i) {
                pair(left[i], right[i]);
            }
        }
    }

    struct Likely {
        double likeness;
        std::uint32_t left;
        std::uint32_t right;
    };

    void match_alike(const Places& left, const Places& right, double least) {
        std::vector<Features> ours;
        std::vector<Features> theirs;
        for (const std::uint32_t i : left) {
            ours.emplace_back(left_, left_nodes_[i]);
        }
        for (const std::uint32_t i : right) {
            theirs.emplace_back(right_, right_nodes_[i]);
        }
        std::vector<Likely> likely;
        for (std::size_t i = 0; i < left.size(); ++i) {
            for (std::size_t k = 0; k < right.size(); ++k) {
                const double likeness = ours[i].likeness(theirs[k]);
                const bool says_much =
                    least < least_renamed || std::min(ours[i].size(), theirs[k].size()) > 2;
                if (likeness >= least && says_much) {
                    likely.push_back({likeness, left[i], right[k]});
                }
            }
        }
        std::stable_sort(likely.begin(), likely.end(),
                         [](const Likely& a, const Likely& b) { return a.likeness > b.likeness; });
        for (const Likely& match : likely) {
            if (match_.right_of[match.left] == unmatched && match_.left_of[match.right] == unmatched) {
                pair(match.left, match.right);
            }
        }
    }

    void find_moved() {
        std::vector<MatchedPair> pairs;
        for (std::uint32_t i = 0; i < right_size(); ++i) {
            if (match_.left_of[i] != unmatched) {
                match_.is_moved[i] = true;
                pairs.emplace_back(match_.left_of[i], i);
            }
        }
        for (const MatchedPair& pair : longest_row(pairs)) {
            match_.is_moved[pair.second] = false;
        }
    }

    const TreeIndex& left_;
    const TreeIndex& right_;
    const Places& left_nodes_;
    const Places& right_nodes_;
    SiblingMatch match_;
    Places left_rest_;
    Places right_rest_;
};

} // namespace

SiblingMatch match_siblings(const TreeIndex& left, const std::vector<std::uint32_t>& left_nodes,
                            const TreeIndex& right, const std::vector<std::uint32_t>& right_nodes) {
    return SiblingMatcher(left, left_nodes, right, right_nodes).run();
}

} // namespace bk_parser
