#include "document/paths/path_place_impl.h"
#include "document/paths/tree_cursor_impl.h"

#include "document/path.h"

#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace bk_parser {

namespace {

/// Counts entries of one group with the same name, first string or template.
class LikenessCounter {
public:
    explicit LikenessCounter(const ParserGroup& group) {
        for (const ParserEntry* entry : group.get_entries()) {
            if (entry != nullptr) {
                Names& names = names_[entry->get_name().get_view()];
                std::string_view key;
                ++names.count;
                if (find_key(*entry, key)) {
                    ++names.keys[key];
                }
                ++names.templates[entry->get_template().get_view()];
            }
        }
    }

    /// Call it for every entry of the group, in order.
    Likeness next(const ParserEntry& entry) {
        Names& names = names_[entry.get_name().get_view()];
        std::string_view key;
        const bool has_key = find_key(entry, key);
        return {names.count, has_key ? names.keys[key] : 0, names.templates[entry.get_template().get_view()],
                names.passed++};
    }

private:
    struct Names {
        unsigned int count = 0;
        unsigned int passed = 0;
        std::unordered_map<std::string_view, unsigned int> keys;
        std::unordered_map<std::string_view, unsigned int> templates;
    };
    std::unordered_map<std::string_view, Names> names_;
};

} // namespace

struct PathIndex::State {
    struct Node {
        ParserEntry* parent;
        unsigned int value; // of the parent, which holds the entry's group
        Likeness likeness;
    };

    /// With few entries, comparing all pairs is faster than hashing.
    void add_group(const ParserGroup& group, ParserEntry* parent, unsigned int value) {
        constexpr unsigned int few = 16;
        if (group.get_entries().get_count() > few) {
            add_large_group(group, parent, value);
            return;
        }
        for (const ParserEntry* entry : group.get_entries()) {
            if (entry != nullptr) {
                nodes.try_emplace(entry, Node{parent, value, Likeness::of(group, *entry)});
            }
        }
    }
    void add_large_group(const ParserGroup& group, ParserEntry* parent, unsigned int value) {
        LikenessCounter counter(group);
        for (const ParserEntry* entry : group.get_entries()) {
            if (entry != nullptr) {
                nodes.try_emplace(entry, Node{parent, value, counter.next(*entry)});
            }
        }
    }
    const Node* find(const ParserEntry& entry) const noexcept {
        const auto found = nodes.find(&entry);
        return found == nodes.end() ? nullptr : &found->second;
    }

    std::unordered_map<const ParserEntry*, Node> nodes;
};

PathIndex::PathIndex(const ParserGroup& root) : state_(std::make_unique<State>()) {
    state_->add_group(root, nullptr, 0);
    TreeCursor cursor(root);
    for (;;) {
        while (ParserGroup* const group = cursor.entry() == nullptr ? nullptr : cursor.next_group()) {
            state_->add_group(*group, cursor.entry(), cursor.group_value());
            cursor.enter(*group);
        }
        if (!cursor.next_entry() && !cursor.leave()) {
            return;
        }
    }
}
PathIndex::PathIndex(PathIndex&& other) noexcept = default;
PathIndex& PathIndex::operator=(PathIndex&& other) noexcept = default;
PathIndex::~PathIndex() = default;

std::string PathIndex::path_of(const ParserEntry& entry) const {
    if (state_ == nullptr) {
        return {};
    }
    std::vector<std::pair<const ParserEntry*, const State::Node*>> way;
    for (const ParserEntry* at = &entry; at != nullptr; at = way.back().second->parent) {
        const State::Node* const node = state_->find(*at);
        if (node == nullptr) {
            return {};
        }
        way.emplace_back(at, node);
    }
    std::string path;
    for (; !way.empty(); way.pop_back()) {
        const auto& [step, node] = way.back();
        if (node->parent != nullptr) {
            append_descent(path, *node->parent, node->value);
        }
        append_step(path, *step, node->likeness);
    }
    return path;
}

ParserEntry* PathIndex::parent_of(const ParserEntry& entry) const noexcept {
    const State::Node* const node = state_ == nullptr ? nullptr : state_->find(entry);
    return node == nullptr ? nullptr : node->parent;
}

} // namespace bk_parser
