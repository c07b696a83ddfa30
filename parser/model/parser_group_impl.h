#pragma once

#include "parser/model/parser_entry_impl.h"
#include "parser/parser_group.h"

#include <memory>

namespace bk {

class DocumentPages;

/// Gives the rest of the library access to a group.
class GroupAccess {
public:
    /// Appends entries that have no other owner, and puts each into the index by its type.
    static void append(ParserGroup& group, ParserEntry* const* entries, unsigned int count) {
        escape(group);
        list_entries(group, entries, count);
    }
    /// Gives a group in pages, which is being read, all of its entries.
    static void fill(ParserGroup& group, ParserEntry* const* entries, unsigned int count,
                     DocumentPages& pages);
    /// Creates a group without a name, in `pages` unless that is null.
    static std::unique_ptr<ParserGroup> make(DocumentPages* pages);
    static void append(ParserGroup& group, ParserEntry* entry) { group.append(entry); }
    /// Appends an entry, and deletes it when memory runs out.
    static void adopt(ParserGroup& group, ParserEntry* entry) {
        std::unique_ptr<ParserEntry> owned(entry);
        group.append(entry);
        static_cast<void>(owned.release());
    }

    /// Deletes the entry that was appended last. The group must not have been edited since. Allocates nothing, in constant time.
    static void drop_appended(ParserGroup& group) noexcept;

    /// Adds an entry that holds the group `value`, or a new group when that is null. When it throws, the caller still owns `value`. Returns
    /// null for a null entry.
    static ParserGroup* add_group(ParserGroup& group, std::unique_ptr<ParserEntry> entry, ParserGroup* value);
    /// Takes out the entry at a position, whatever its type, and gives it to the caller; returns null for an empty slot and past the end.
    /// When other groups list the entry too, the caller gets a copy. When it throws, nothing has changed.
    static std::unique_ptr<ParserEntry> take(ParserGroup& group, unsigned int position);
    /// Moves an entry to the end of another group, which must not be inside that entry. When it throws, nothing has changed.
    static void transfer(ParserGroup& from, unsigned int position, ParserGroup& to);
    /// Undoes a transfer. Allocates nothing, as long as neither group was edited in between.
    static void transfer_back(ParserGroup& from, unsigned int position, ParserGroup& to,
                              unsigned int to_position) noexcept;
    /// Inserts an entry that has no other owner at a position; a position past the end means the end. When it throws, nothing has
    /// changed.
    static void insert(ParserGroup& group, unsigned int position, ParserEntry* entry);

    /// Removes a slot from the list of entries. Shifts an exact index, and rebuilds any other.
    static void drop_slot(ParserGroup& group, unsigned int position, bool is_exact) noexcept;

    /// Whether the group is in the pages of a document.
    static bool is_in_pages(const ParserGroup& group) noexcept { return group.keyword_index_.is_in_pages(); }
    /// Call it before an edit after which the document of the group cannot be freed as a whole.
    static void escape(const ParserGroup& group) noexcept {
        if (is_in_pages(group)) {
            escape_from_pages(group);
        }
    }
    /// Whether a group in pages has a list that is stored elsewhere.
    static bool has_lists_outside(const ParserGroup& group) noexcept;
    /// Call it before a list of a group in pages is stored elsewhere. When the document is freed, it frees such lists only for groups that
    /// had one when they were read.
    static void list_outside(const ParserGroup& group) noexcept {
        if (is_in_pages(group) && !has_lists_outside(group)) {
            escape_from_pages(group);
        }
    }
    /// Call it before a group frees its own lists. A document that has the group in its list would free them again at its end.
    static void leave_list(const ParserGroup& group) noexcept {
        if (is_in_pages(group) && has_lists_outside(group)) {
            escape_from_pages(group);
        }
    }
    /// Frees the lists, but not the entries in them.
    static void give_lists_back(ParserGroup& group) noexcept {
        group.entries_.clear();
        group.keyword_index_.clear();
    }

    /// The next of the groups that wait for their deletion.
    static ParserGroup*& next_doomed(ParserGroup& group) noexcept { return group.next_doomed_; }
    static void forget_source_entry(ParserGroup& group) noexcept { group.source_entry_ = nullptr; }

private:
    static void list_entries(ParserGroup& group, ParserEntry* const* entries, unsigned int count);
    static void escape_from_pages(const ParserGroup& group) noexcept;
};

} // namespace bk
