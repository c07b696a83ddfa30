#pragma once

#include "parser/parser_group.h"

#include <cstddef>
#include <vector>

namespace bkdoc {

/// Walks a tree in document order. It stops at every entry, and at each group of an entry that has several. Its stack is
/// explicit, so depth costs no call stack.
class TreeWalk {
public:
    explicit TreeWalk(const ParserGroup& root) { levels_.push_back({&root, nullptr, 0, 0}); }

    /// Goes to the next stop; false at the end of the tree.
    bool next();

    const ParserEntry& entry() const noexcept { return *entry_; }
    /// Whether the stop is one of several groups of the entry, not the entry itself.
    bool is_at_group() const noexcept { return levels_.back().entry != nullptr; }
    /// The group below the stop, which is entered next. Null when there is none or more than one.
    const ParserGroup* group_below() const noexcept { return below_; }
    /// The group that contains the stop.
    const ParserGroup& group() const noexcept { return *levels_.back().group; }
    /// 1 for an entry of the root.
    std::size_t depth() const noexcept { return levels_.size(); }
    /// The depth, counting entries only: how many groups the entry is in.
    std::size_t nesting() const noexcept { return levels_.size() - group_lists_; }
    /// Whether the stop is the first or the last at its level.
    bool is_first() const noexcept { return levels_.back().passed == 1; }
    bool is_last() const noexcept { return is_last_at(levels_.size()); }
    /// Whether the ancestor at this smaller depth is the last at its level.
    bool is_last_at(std::size_t depth) const noexcept;

    /// Skips everything below the stop.
    void skip() noexcept {
        below_ = nullptr;
        several_ = 0;
    }

private:
    /// A level lists the entries of a group, or the groups of an entry.
    struct Level {
        const ParserGroup* group;
        const ParserEntry* entry; // null in a level of entries
        unsigned int next;        // position of an entry, or of a value
        std::size_t passed;       // stops made
        std::size_t count = 0;    // of groups, in a level of groups
    };

    void descend();
    bool advance(Level& level);
    void look_below();

    std::vector<Level> levels_;
    const ParserEntry* entry_ = nullptr;
    const ParserGroup* below_ = nullptr;
    std::size_t group_lists_ = 0; // levels that list groups
    std::size_t several_ = 0;     // groups below the stop, when they are more than one
};

} // namespace bkdoc
