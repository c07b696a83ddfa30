#pragma once

#include "core/core_export.h"
#include "parser/parser_entry.h"
#include "parser/parser_group.h"

#include <vector>

namespace bk_parser {

/// A difference of two trees.
struct TreeChange {
    /// What happened to an entry.
    enum class Kind {
        value,   ///< one value of an entry: see value_before and value_after
        head,    ///< an entry's kind, template or array count
        added,   ///< an entry with all that it holds
        removed, ///< the same
        moved,   ///< an entry stands at another place of its group, or in another group
        renamed  ///< an entry has another name
    };
    /// Stands for the entry as a whole.
    static constexpr unsigned int no_value = 0xFFFFFFFFu;

    /// What happened.
    Kind kind = Kind::value;
    /// The entry in the tree before, null when it was added, and in the tree after, null when it was removed.
    const ParserEntry* before = nullptr;
    /// The entry in the second tree; null when it was removed.
    const ParserEntry* after = nullptr;
    /// The value that differs; of one that was added or removed one of them is no_value.
    unsigned int value_before = no_value;
    /// The position of the value in the second tree.
    unsigned int value_after = no_value;
};

/// What counts as a difference.
struct CompareOptions {
    /// Two numbers that are no further apart are equal, whatever their types. Below 0 numbers are equal that have the same type and the
    /// same bits.
    double tolerance = -1.0;
    /// Whether the order of the entries of a group is of no account.
    bool ignore_order = false;
};

/// Every difference of two trees, in the order of the tree after. A number counts by its value, not by its spelling, and the places of
/// entries in files do not count.
///
/// In each group the entries are matched: equal ones in their order; equal ones elsewhere, which then were moved; those of
/// the same name, template and first string; those of the same name that are alike; and of what is left those that have the same values
/// and entries, or most of them, under another name, which then were renamed. Entries with groups that are removed in one place and stand
/// just so in another one were moved. Takes time in proportion to the trees plus, in each group, the differences by the
/// logarithm of its entries; entries of one name that differ are compared for likeness as long as they are few, else taken in their order.
/// The changes point into the trees.
[[nodiscard]] BK_PARSER_API std::vector<TreeChange>
compare_trees(const ParserGroup& before, const ParserGroup& after, const CompareOptions& options = {});

} // namespace bk_parser
