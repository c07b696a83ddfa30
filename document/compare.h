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
        value,   ///< one value of an entry changed: see value_before and value_after
        head,    ///< an entry's kind, template or array count changed
        added,   ///< an entry was added, with all that it holds
        removed, ///< an entry was removed, with all that it holds
        moved,   ///< an entry is at another position of its group, or in another group
        renamed  ///< an entry has another name
    };
    /// Means the entry as a whole.
    static constexpr unsigned int no_value = 0xFFFFFFFFu;

    /// What happened.
    Kind kind = Kind::value;
    /// The entry in the first tree; null when it was added.
    const ParserEntry* before = nullptr;
    /// The entry in the second tree; null when it was removed.
    const ParserEntry* after = nullptr;
    /// The position of the value in the first tree. When a value was added or removed, one of the two positions is no_value.
    unsigned int value_before = no_value;
    /// The position of the value in the second tree.
    unsigned int value_after = no_value;
};

/// What counts as a difference.
struct CompareOptions {
    /// Two numbers that differ by at most this are equal, whatever their types. Below 0: numbers are equal only when they have the same
    /// type and the same bits.
    double tolerance = -1.0;
    /// Whether to ignore the order of the entries of a group.
    bool ignore_order = false;
};

/// Every difference of two trees, in the order of the second tree. Compares numbers by value, not by spelling. Ignores the places of
/// entries in files. The changes point into the trees.
///
/// In each group it matches the entries in this order:
/// - equal entries in the same order;
/// - equal entries elsewhere in the group: they were moved;
/// - entries with the same name, template and first string;
/// - similar entries of the same name;
/// - entries with all or most of their values and entries equal, under another name: they were renamed.
///
/// An entry with a group that was removed in one place and is unchanged in another one was moved. Takes time in proportion to the
/// trees plus, in each group, the differences times the logarithm of its entries. Compares differing entries of one name for
/// similarity only while they are few; otherwise pairs them in their order.
[[nodiscard]] BK_PARSER_API std::vector<TreeChange>
compare_trees(const ParserGroup& before, const ParserGroup& after, const CompareOptions& options = {});

} // namespace bk_parser
