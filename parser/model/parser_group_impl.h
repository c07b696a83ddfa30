#pragma once

#include "parser/parser_group.h"

#include <memory>

namespace bk {

/// What the library's other parts see of a group.
class GroupAccess {
public:
    /// Appends entries that nobody else owns, filing each by its type.
    static void append(ParserGroup& group, ParserEntry* const* entries, unsigned int count);
    static void append(ParserGroup& group, ParserEntry* entry) { group.append(entry); }
    /// Appends an entry that dies when there is no memory for that.
    static void adopt(ParserGroup& group, ParserEntry* entry) {
        std::unique_ptr<ParserEntry> owned(entry);
        group.append(entry);
        static_cast<void>(owned.release());
    }

    /// Lists an entry that holds `value`, or a new group for null, when all of it is there: until then `value` is the
    /// caller's. Null for a null entry.
    static ParserGroup* add_group(ParserGroup& group, std::unique_ptr<ParserEntry> entry, ParserGroup* value);

    /// A link between groups that wait for their deletion.
    static ParserGroup*& next_doomed(ParserGroup& group) noexcept { return group.next_doomed_; }
    static void forget_source_entry(ParserGroup& group) noexcept { group.source_entry_ = nullptr; }
};

} // namespace bk
