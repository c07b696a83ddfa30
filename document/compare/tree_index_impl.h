#pragma once

#include "document/compare/value_equal_impl.h"
#include "parser/parser_group.h"

#include <cstdint>
#include <vector>

namespace bk_parser {

/// The entries of a tree in document order, with hashes of what each holds.
class TreeIndex {
public:
    struct Node {
        const ParserEntry* entry;
        std::uint64_t body = 0; // hash of everything except the name
        std::uint64_t hash = 0; // hash of everything
        std::uint32_t end = 0;  // the node that follows everything in the entry
    };

    TreeIndex(const ParserGroup& root, bool ignores_order);

    const Node& operator[](std::uint32_t i) const noexcept { return nodes_[i]; }
    std::uint32_t size() const noexcept { return static_cast<std::uint32_t>(nodes_.size()); }

    /// The nodes of a group's entries. `first` is the node of the first one.
    std::vector<std::uint32_t> entries_of(const ParserGroup& group, std::uint32_t first) const;
    /// The node that follows the entries of a group.
    std::uint32_t node_after(const ParserGroup& group, std::uint32_t first) const;

private:
    std::vector<Node> nodes_;
};

} // namespace bk_parser
