#pragma once

#include "document/ranges.h"

#include <vector>

namespace bk_parser {

/// The visit of a walk or a search that was moved from.
inline constexpr Visit no_visit;

/// A place in a tree: the entries on the way down from a group, on a stack of its own. The caller decides which groups to
/// enter. The cursor follows an entry that was moved in its group, and steps over one that is gone.
class TreeCursor {
public:
    explicit TreeCursor(const ParserGroup& group) { enter(const_cast<ParserGroup&>(group)); }

    /// Goes to the next entry of the whole tree, depth first, an entry before what it holds. Returns false after the last.
    bool next();
    /// Goes to the next entry of the innermost group. Returns false after the last.
    bool next_entry() noexcept;
    /// The next group among the values of the current entry; null after the last.
    ParserGroup* next_group() noexcept;
    /// Skips the remaining groups of the current entry.
    void skip_groups() noexcept { levels_.back().value = no_more_values; }
    void enter(ParserGroup& group) { levels_.push_back({&group, nullptr, 0, 0}); }
    /// Goes back to the entry that holds the innermost group. Returns false when that group is the outermost.
    bool leave() noexcept;

    ParserEntry* entry() const noexcept { return levels_.back().entry; }
    ParserGroup& group() const noexcept { return *levels_.back().group; }
    /// Which value of the current entry `next_group` gave last.
    unsigned int group_value() const noexcept { return levels_.back().value - 1; }
    unsigned int depth() const noexcept { return static_cast<unsigned int>(levels_.size() - 1); }
    Visit visit(unsigned int value) const noexcept {
        const Level& level = levels_.back();
        return {*level.entry, *level.group, level.position, depth(), value};
    }

    struct Level {
        ParserGroup* group;
        ParserEntry* entry;    // null before the first, after the last, and when it is gone
        unsigned int position; // of the entry, or of the next one when there is none
        unsigned int value;    // the next to look at
    };
    /// From the outermost group on; the last one has the current entry.
    const std::vector<Level>& levels() const noexcept { return levels_; }

private:
    static constexpr unsigned int no_more_values = 0xFFFFFFFFu;

    static bool find_again(Level& level) noexcept;

    std::vector<Level> levels_;
};

} // namespace bk_parser
