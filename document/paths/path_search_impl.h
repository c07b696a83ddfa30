#pragma once

#include "document/paths/path_steps_impl.h"
#include "document/paths/tree_cursor_impl.h"

#include <memory>
#include <vector>

namespace bk_parser {

/// The group at position `value` of an entry, or its first group when `value` is no_value. Null when there is none.
ParserGroup* held_group(const ParserEntry& entry, unsigned int value) noexcept;

/// The entry that a path finds first; null when there is none, or the path is malformed.
ParserEntry* find_first(const ParserGroup& group, const PathArgument& path);

/// Matches the steps of a path like a nondeterministic automaton: keeps for each open group the set of steps that its
/// entries may match. Tries no step twice on an entry, so that no path takes exponential time.
class PathMatcher {
public:
    /// Matches only the first `step_count` steps. With `takes_any_value` ignores the `@` of the last one; the caller handles it.
    PathMatcher(const ParserGroup& group, const ParsedPath& path, std::size_t step_count,
                bool takes_any_value = false);

    bool next();
    /// Skips what the current entry holds.
    void skip_groups() noexcept { cursor_.skip_groups(); }
    const TreeCursor& cursor() const noexcept { return cursor_; }
    Visit visit() const noexcept;

private:
    /// A step that the entries below a group value may match, and the position of that value, or no_value for all.
    struct Successor {
        unsigned int step;
        unsigned int value;
    };
    struct Level {
        std::size_t states;
        std::size_t counters;
        std::size_t successors;
    };

    void enter_next_group();
    void leave() noexcept;
    bool evaluate();
    bool finds(const PathStep& last) const noexcept;
    bool add_states(unsigned int value);
    void add_state(unsigned int step);

    TreeCursor cursor_;
    const ParsedPath& path_;
    std::size_t step_count_;
    bool takes_any_value_;
    // Stacks; each level of the tree has its part of them.
    std::vector<Level> levels_;
    std::vector<unsigned int> states_; // steps, ascending
    std::vector<unsigned int> counters_;
    std::vector<Successor> successors_; // of the current entries, ascending by step
};

} // namespace bk_parser
