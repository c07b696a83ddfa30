#pragma once

#include "parser/parser_group.h"

namespace bk {

/// What the library's other parts see of a group.
class GroupAccess {
public:
    /// Appends entries that nobody else owns, filing each by its type.
    static void append(ParserGroup& group, ParserEntry* const* entries, unsigned int count);
    static void append(ParserGroup& group, ParserEntry* entry) { group.append(entry); }

    /// A link between groups that wait for their deletion.
    static ParserGroup*& next_doomed(ParserGroup& group) noexcept { return group.next_doomed_; }
    static void forget_source_entry(ParserGroup& group) noexcept { group.source_entry_ = nullptr; }
};

} // namespace bk
