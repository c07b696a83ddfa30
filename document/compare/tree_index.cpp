#include "document/compare/tree_index_impl.h"

#include "document/sources/byte_hash_impl.h"

namespace bk_parser {

namespace {

/// An entry that is being hashed, or the root.
struct Level {
    const ParserEntry* entry; // null for the root
    std::uint32_t node;
    unsigned int next_value = 0;
    std::uint64_t hash = 0;
    // The group that is being walked.
    const ParserGroup* group = nullptr;
    unsigned int next_entry = 0;
    std::uint64_t group_hash = 0;
};

std::uint64_t hash_of_head(const ParserEntry& entry) {
    return mixed(mixed(static_cast<std::uint64_t>(entry.get_type()), entry.get_array_count()),
                 ByteHash::of(entry.get_template().get_view()));
}

class Indexer {
public:
    Indexer(std::vector<TreeIndex::Node>& nodes, bool ignores_order)
        : nodes_(nodes), ignores_order_(ignores_order) {}

    void run(const ParserGroup& root) {
        Level level{nullptr, 0};
        level.group = &root;
        levels_.push_back(level);
        while (!levels_.empty()) {
            if (levels_.back().group != nullptr) {
                step_in_group(levels_.back());
            } else {
                step_in_entry(levels_.back());
            }
        }
    }

private:
    void step_in_group(Level& level) {
        const CoreVector<ParserEntry*>& entries = level.group->get_entries();
        while (level.next_entry < entries.get_count()) {
            const ParserEntry* const entry = entries[level.next_entry++];
            if (entry != nullptr) {
                const auto node = static_cast<std::uint32_t>(nodes_.size());
                nodes_.push_back({entry});
                levels_.push_back({entry, node, 0, hash_of_head(*entry)});
                return;
            }
        }
        level.hash = mixed(level.hash, level.group_hash);
        level.group = nullptr;
        if (level.entry == nullptr) {
            levels_.pop_back();
        }
    }

    void step_in_entry(Level& level) {
        const ParserEntry& entry = *level.entry;
        while (level.next_value < entry.get_value_count()) {
            const unsigned int i = level.next_value++;
            level.hash = mixed(level.hash, hash_of_value(entry, i));
            if (entry.is_value_group(i)) {
                level.group = entry.get_group(i);
                level.next_entry = 0;
                level.group_hash = 0;
                return;
            }
        }
        finish(level);
    }

    void finish(const Level& level) {
        TreeIndex::Node& node = nodes_[level.node];
        node.body = level.hash;
        node.hash = mixed(level.hash, ByteHash::of(level.entry->get_name().get_view()));
        node.end = static_cast<std::uint32_t>(nodes_.size());
        levels_.pop_back();
        Level& outer = levels_.back();
        outer.group_hash = ignores_order_ ? outer.group_hash + node.hash : mixed(outer.group_hash, node.hash);
    }

    std::vector<TreeIndex::Node>& nodes_;
    bool ignores_order_;
    std::vector<Level> levels_;
};

} // namespace

TreeIndex::TreeIndex(const ParserGroup& root, bool ignores_order) {
    Indexer(nodes_, ignores_order).run(root);
}

std::vector<std::uint32_t> TreeIndex::entries_of(const ParserGroup& group, std::uint32_t first) const {
    std::vector<std::uint32_t> entries;
    entries.reserve(group.get_entries().get_count());
    for (const ParserEntry* const entry : group.get_entries()) {
        if (entry != nullptr) {
            entries.push_back(first);
            first = nodes_[first].end;
        }
    }
    return entries;
}

std::uint32_t TreeIndex::node_after(const ParserGroup& group, std::uint32_t first) const {
    for (const ParserEntry* const entry : group.get_entries()) {
        first = entry == nullptr ? first : nodes_[first].end;
    }
    return first;
}

} // namespace bk_parser
