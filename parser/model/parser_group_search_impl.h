#pragma once

#include "parser/parser_group.h"

#include <vector>

namespace bk {

/// Looks for a group below some entries, at any depth and without recursion. What several lists hold is visited once.
class GroupSearch {
public:
    explicit GroupSearch(const ParserGroup& sought) : sought_(sought) {}

    /// Adds what the entry holds to what is to be searched. True when the group is a value of it.
    bool enter(const ParserEntry& entry);
    /// Whether anything is left to be searched.
    bool is_open() const noexcept { return !open_.empty(); }
    /// True when the group is below what was entered. Linear in the entries there.
    bool run();

private:
    bool is_new(const void* object);

    const ParserGroup& sought_;
    std::vector<const ParserGroup*> open_;
    CoreSet<const void*> seen_; // of what may be held twice
};

/// Whether this group lists an entry that holds `held`, and nothing else can hold that. Linear in the entries of the group; no
/// source entry is looked at that the group does not list.
bool is_only_holder(const ParserGroup& group, const ParserGroup& held) noexcept;

} // namespace bk
