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

    /// Deletes the entry that was appended last, as long as the group was not edited since. Takes no memory, and no longer in a
    /// large group.
    static void drop_appended(ParserGroup& group) noexcept;

    /// Lists an entry that holds `value`, or a new group for null, when all of it is there: until then `value` is the
    /// caller's. Null for a null entry.
    static ParserGroup* add_group(ParserGroup& group, std::unique_ptr<ParserEntry> entry, ParserGroup* value);
    /// Lets the next edit that rebuilds the index need no memory, when a host has changed types meanwhile and adds `extra`
    /// entries.
    static void make_index_room(ParserGroup& group, unsigned int extra);
    /// Takes out the entry at a position, whatever its type; null for an empty slot and past the end. The caller owns it. An
    /// entry that other groups list too stays theirs, and the caller gets a copy. All or nothing.
    static std::unique_ptr<ParserEntry> take(ParserGroup& group, unsigned int position);
    /// Moves an entry to the end of another group, which is not inside of that entry. All or nothing.
    static void transfer(ParserGroup& from, unsigned int position, ParserGroup& to);
    /// Undoes that, which needs no memory as long as neither group was edited meanwhile.
    static void transfer_back(ParserGroup& from, unsigned int position, ParserGroup& to,
                              unsigned int to_position) noexcept;
    /// Lists an entry that nobody else owns at a position, past the end at the end. All or nothing.
    static void insert(ParserGroup& group, unsigned int position, ParserEntry* entry);

    /// A link between groups that wait for their deletion.
    static ParserGroup*& next_doomed(ParserGroup& group) noexcept { return group.next_doomed_; }
    static void forget_source_entry(ParserGroup& group) noexcept { group.source_entry_ = nullptr; }

private:
    static void drop_slot(ParserGroup& group, unsigned int position);
};

} // namespace bk
