#include "core/reports/core_diagnostic_impl.h"
#include "parser/model/parser_entry_impl.h"
#include "parser/model/parser_group_impl.h"
#include "parser/model/parser_group_search_impl.h"
#include "parser/parser_group.h"

#include <algorithm>
#include <memory>

// Any allocation below may fail. So an edit takes what it needs before it moves an entry: room for the entries, and for the index, which
// may become longer when a host has changed types.

namespace {

struct ReleaseEntry {
    void operator()(ParserEntry* entry) const noexcept { bk::EntryAccess::release(entry); }
};

/// Entries to delete once their group is consistent again.
class RemovedEntries {
public:
    explicit RemovedEntries(unsigned int count) { entries_.reserve(count); }
    ~RemovedEntries() { std::for_each(entries_.begin(), entries_.end(), ReleaseEntry()); }
    RemovedEntries(const RemovedEntries&) = delete;
    RemovedEntries& operator=(const RemovedEntries&) = delete;

    /// Takes at most as many as the constructor was told.
    void add(ParserEntry* entry) { entries_.add(entry); }

private:
    CoreVector<ParserEntry*> entries_;
};

bool is_ordinary(const ParserEntry* entry) noexcept {
    return entry != nullptr && entry->get_type() == ParserEntry::TYPE_ENTRY;
}

/// Call it before entries of a group move to another group.
void let_entries_leave(const ParserGroup& from, const ParserGroup& dest) noexcept {
    if (&from == &dest) {
        return;
    }
    bk::GroupAccess::escape(dest);
    for (const ParserEntry* entry : from.get_entries()) {
        bk::EntryAccess::escape(entry);
    }
}

/// Whether one of the entries that the predicate selects would be moved into itself. Logs a message if so.
template <class IsMoved>
bool is_refused(const char* operation, const ParserGroup& from, const ParserGroup& dest, IsMoved is_moved) {
    bk::GroupSearch search(dest);
    bool is_inside = false;
    for (const ParserEntry* entry : from.get_entries()) {
        is_inside = is_inside || (entry != nullptr && is_moved(entry) && search.enter(*entry));
    }
    is_inside = is_inside || (search.is_open() && !bk::is_only_holder(from, dest) && search.run());
    if (is_inside) {
        bk::report_warning("ParserGroup.", operation, ": an entry cannot move into itself\n");
    }
    return is_inside;
}

} // namespace

/// A host may have deleted the entry already. So the entry is read only where the group cannot tell which document it is in. The pages of
/// such a document are still there, and so is the mark of a deleted entry.
void ParserGroup::detach_entry(const unsigned int& ordinal) {
    ParserEntry*& slot = entries_[position_of(ordinal)];
    bk::GroupAccess::escape(*this);
    if (keyword_index_.may_list_document()) {
        bk::EntryAccess::escape(slot);
    }
    slot = nullptr;
}

void ParserGroup::move_entry(const unsigned int& from, const unsigned int& to) {
    const bool is_exact = prepare_index(0);
    ParserEntry** const entries = entries_.get_data();
    if (from < to) {
        std::rotate(entries + from, entries + from + 1, entries + to + 1);
    } else if (from > to) {
        std::rotate(entries + to, entries + from, entries + from + 1);
    }
    if (is_exact) {
        const bool is_listed = keyword_index_.close_gap(from);
        keyword_index_.open_gap(to, is_listed);
    } else {
        rebuild_index();
    }
}

void ParserGroup::move_entry(const unsigned int& position, ParserGroup& dest) {
    if (this == &dest) {
        move_entry(position, entries_.get_count() - 1);
        return;
    }
    const unsigned int from = position; // `position` may alias the count of `dest`
    const auto is_moved = [moved = entries_[from]](const ParserEntry* entry) { return entry == moved; };
    if (is_refused("move_entry", *this, dest, is_moved)) {
        return;
    }
    const bool is_exact = prepare_index(0);
    bk::EntryAccess::escape(entries_[from]);
    dest.append(entries_[from]);
    bk::GroupAccess::drop_slot(*this, from, is_exact);
}

void ParserGroup::move_entries(ParserGroup& dest) {
    if (this != &dest && is_refused("move_entries", *this, dest, is_ordinary)) {
        return;
    }
    let_entries_leave(*this, dest);
    const auto moved_count =
        static_cast<unsigned int>(std::count_if(entries_.begin(), entries_.end(), is_ordinary));
    CoreVector<ParserEntry*> moved;
    moved.reserve(moved_count);
    prepare_index(0);
    dest.entries_.make_room(&dest == this ? 0 : moved_count);
    unsigned int kept = 0;
    for (ParserEntry* entry : entries_) {
        if (is_ordinary(entry)) {
            moved.add(entry);
        } else {
            entries_[kept++] = entry;
        }
    }
    entries_.truncate(kept);
    dest.entries_.add_range(moved.begin(), moved_count);
    rebuild_index();
}

void ParserGroup::move_entries(ParserGroup& dest, unsigned int position) {
    const auto is_any = [](const ParserEntry*) { return true; };
    if (this == &dest || is_refused("move_entries", *this, dest, is_any)) {
        return;
    }
    let_entries_leave(*this, dest);
    const unsigned int moved_count = entries_.get_count();
    dest.prepare_index(count_without_ordinal());
    dest.entries_.reserve(dest.entries_.get_count() + moved_count);
    dest.entries_.extend(moved_count);
    ParserEntry** const place = dest.entries_.begin() + position;
    std::copy_backward(place, dest.entries_.end() - moved_count, dest.entries_.end());
    std::copy(entries_.begin(), entries_.end(), place);
    entries_.truncate(0);
    keyword_index_.truncate(0);
    dest.rebuild_index();
}

void ParserGroup::remove_entries(CoreBasicArray<unsigned int> positions) {
    const unsigned int count = entries_.get_count();
    CoreVector<unsigned char> is_removed;
    std::fill_n(is_removed.extend(count), count, static_cast<unsigned char>(0));
    for (const unsigned int position : positions) {
        if (position < count) {
            is_removed[position] = 1;
        }
    }
    take_out([&](unsigned int position) { return is_removed[position] != 0; });
}

void ParserGroup::remove_entry(const CoreString& name) {
    const CoreString removed_name(name); // may be the name of an entry that goes
    take_out([&](unsigned int position) {
        return entries_[position] != nullptr && entries_[position]->get_name() == removed_name;
    });
}

void ParserGroup::remove_entry(unsigned int position) {
    const bool is_exact = prepare_index(0);
    std::unique_ptr<ParserEntry, ReleaseEntry> removed; // deleted once the group is consistent again
    if (position < entries_.get_count()) {
        removed.reset(entries_[position]);
        bk::GroupAccess::drop_slot(*this, position, is_exact);
    } else if (!is_exact) {
        rebuild_index();
    }
}

/// Removes the entries at the positions that the predicate selects.
template <class IsRemoved>
void ParserGroup::take_out(IsRemoved is_removed) {
    unsigned int removed_count = 0;
    for (unsigned int position = 0; position < entries_.get_count(); ++position) {
        removed_count += is_removed(position) ? 1 : 0;
    }
    RemovedEntries removed(removed_count);
    prepare_index(0);
    unsigned int kept = 0;
    for (unsigned int position = 0; position < entries_.get_count(); ++position) {
        if (is_removed(position)) {
            removed.add(entries_[position]);
        } else {
            entries_[kept++] = entries_[position];
        }
    }
    entries_.truncate(kept);
    rebuild_index();
}
