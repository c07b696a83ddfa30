#pragma once

#include "core/core_export.h"
#include "document/problem.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace bk_parser {

/// The result of a merge.
struct MergeResult {
    /// The merged text. A conflict has both versions of an entry, between the lines "<<<<<<< ours", "=======" and
    /// ">>>>>>> theirs". Empty when there is a reason.
    std::string text;
    /// How many conflicts are marked in the text.
    std::size_t conflicts = 0;
    /// Why the texts could not be merged, in one line; otherwise empty.
    std::string reason;
    /// The errors that are the reason. `file` says where they are: "base", "ours", "theirs", or "merged" for the text that the merge
    /// would have made.
    std::vector<Problem> problems;
    /// Whether the texts were merged, with or without conflicts.
    bool ok() const { return reason.empty(); }
};

/// Merges two texts that were made from one: `base` became `ours` and `theirs`. It merges entry by entry. A comment above or after an
/// entry belongs to it. Include and version lines count as entries:
/// - What only one side changed, added or removed is taken from that side.
/// - A group that both sides changed is merged entry by entry.
/// - An entry that both sides changed in different ways, or that one side changed and the other removed, is a conflict.
///
/// Matches entries by equal content, otherwise by name, template and first string. Keeps the layout of `ours`; what comes from
/// `theirs` keeps the layout of `theirs`. When only `theirs` changed the order of entries, takes that order.
///
/// Refuses texts with errors, and a merge whose text would have errors; `problems` has them all. Near-linear in the texts.
[[nodiscard]] BK_PARSER_API MergeResult merge_texts(std::string_view base, std::string_view ours,
                                                    std::string_view theirs);

} // namespace bk_parser
