#pragma once

#include "parser/parser_group.h"

#include <vector>

namespace bk {

/// Looks for a group below some entries, at any depth and without recursion. Visits what several lists hold only once.
class GroupSearch {
public:
    explicit GroupSearch(const ParserGroup& sought) : sought_(sought) {}

    /// Adds the groups of the entry to those to search. Returns true when the wanted group is one of them.
    bool enter(const ParserEntry& entry);
    /// Whether any group is left to search.
    bool is_open() const noexcept { return !open_.empty(); }
    /// Returns true when the wanted group is below what was entered. Linear in the entries there.
    bool run();

private:
    bool is_new(const void* object);

    const ParserGroup& sought_;
    std::vector<const ParserGroup*> open_;
    CoreSet<const void*> seen_; // of the objects that several lists may hold
};

/// Whether this group lists an entry that holds `held`, and no other entry can hold it. Linear in the entries of the group. Looks only at
/// entries that the group lists.
bool is_only_holder(const ParserGroup& group, const ParserGroup& held) noexcept;

} // namespace bk
