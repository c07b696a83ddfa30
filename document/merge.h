#pragma once

#include "core/core_export.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace bk_parser {

/// How two texts were merged.
struct MergeResult {
    /// With a conflict marked as "<<<<<<< ours", "=======", ">>>>>>> theirs", each on a line of its own, around the
    /// two versions of an entry. Empty when there is a reason.
    std::string text;
    /// How many conflicts are marked in the text.
    std::size_t conflicts = 0;
    /// Why the texts could not be merged, in one line; else empty.
    std::string reason;
    /// Whether there is no reason against it.
    bool ok() const { return reason.empty(); }
};

/// Merges two texts that were made of one: `base` became `ours` here and `theirs` there. Merged are entries, with the
/// comments above and behind them: in each group, what only one side changed, added or removed is taken from that side,
/// and a group that both changed is merged entry by entry. What both changed in different ways, or one changed and
/// the other removed, is a conflict. Entries are known again by equal content, else by
/// name, template and first string. The layout stays that of `ours`, and of what comes from `theirs` that of `theirs`; where only they changed the order of entries, theirs is taken.
/// Include and version lines are merged as entries are.
///
/// Refuses texts that have faults, and refuses when the merged text would have faults. Near-linear in the texts.
[[nodiscard]] BK_PARSER_API MergeResult merge_texts(std::string_view base, std::string_view ours,
                                                    std::string_view theirs);

} // namespace bk_parser
