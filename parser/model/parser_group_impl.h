#pragma once

#include "parser/model/parser_entry_impl.h"
#include "parser/parser_group.h"

#include <memory>

namespace bk {

class DocumentPages;

/// What the library's other parts see of a group.
class GroupAccess {
public:
    /// Appends entries that nobody else owns, filing each by its type.
    static void append(ParserGroup& group, ParserEntry* const* entries, unsigned int count) {
        escape(group);
        list_entries(group, entries, count);
    }
    /// The same of a group that is being read, whose entries these are, all of them, and which stands in pages.
    static void fill(ParserGroup& group, ParserEntry* const* entries, unsigned int count,
                     DocumentPages& pages);
    /// A new group without a name: in pages, where there are some.
    static std::unique_ptr<ParserGroup> make(DocumentPages* pages);
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

    /// Takes a slot out of the lists. An exact index is shifted; any other is found anew.
    static void drop_slot(ParserGroup& group, unsigned int position, bool is_exact) noexcept;

    /// Whether the group stands in the pages of a document.
    static bool is_in_pages(const ParserGroup& group) noexcept { return group.keyword_index_.is_in_pages(); }
    /// Before an edit after which the document of the group does not go as one.
    static void escape(const ParserGroup& group) noexcept {
        if (is_in_pages(group)) {
            escape_from_pages(group);
        }
    }
    /// Of a group in pages: whether a list of it stands elsewhere.
    static bool has_lists_outside(const ParserGroup& group) noexcept;
    /// Before a list of a group in pages comes to stand elsewhere. Its document does not look at a group that had none there.
    static void list_outside(const ParserGroup& group) noexcept {
        if (is_in_pages(group) && !has_lists_outside(group)) {
            escape_from_pages(group);
        }
    }
    /// Before a group gives its lists back by itself. A document that knows of them would look at the group at its end.
    static void leave_list(const ParserGroup& group) noexcept {
        if (is_in_pages(group) && has_lists_outside(group)) {
            escape_from_pages(group);
        }
    }
    /// Gives the lists back, and not what they list.
    static void give_lists_back(ParserGroup& group) noexcept {
        group.entries_.clear();
        group.keyword_index_.clear();
    }

    /// A link between groups that wait for their deletion.
    static ParserGroup*& next_doomed(ParserGroup& group) noexcept { return group.next_doomed_; }
    static void forget_source_entry(ParserGroup& group) noexcept { group.source_entry_ = nullptr; }

private:
    static void list_entries(ParserGroup& group, ParserEntry* const* entries, unsigned int count);
    static void escape_from_pages(const ParserGroup& group) noexcept;
};

} // namespace bk
