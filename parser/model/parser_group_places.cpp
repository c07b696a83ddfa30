#include "parser/model/parser_entry_impl.h"
#include "parser/model/parser_group_impl.h"

#include <algorithm>

namespace bk {

void GroupAccess::drop_slot(ParserGroup& group, unsigned int position, bool is_exact) noexcept {
    std::copy(group.entries_.begin() + position + 1, group.entries_.end(), group.entries_.begin() + position);
    group.entries_.truncate(group.entries_.get_count() - 1);
    if (is_exact) {
        group.keyword_index_.close_gap(position);
    } else {
        group.rebuild_index();
    }
}

void GroupAccess::drop_appended(ParserGroup& group) noexcept {
    const unsigned int last = group.entries_.get_count() - 1;
    const unsigned int keyword_count = group.keyword_index_.get_count();
    ParserEntry* const entry = group.entries_[last];
    group.entries_.truncate(last);
    if (keyword_count != 0 && group.keyword_index_[keyword_count - 1] == last) {
        group.keyword_index_.truncate(keyword_count - 1);
    }
    EntryAccess::release(entry);
}

std::unique_ptr<ParserEntry> GroupAccess::take(ParserGroup& group, unsigned int position) {
    if (position >= group.entries_.get_count() || group.entries_[position] == nullptr) {
        return nullptr;
    }
    const bool is_exact = group.prepare_index(0);
    ParserEntry* const entry = group.entries_[position];
    EntryAccess::escape(entry);
    std::unique_ptr<ParserEntry> taken;
    if (EntryAccess::is_shared(*entry)) {
        taken = std::make_unique<ParserEntry>(*entry);
        EntryAccess::release(entry);
    } else {
        taken.reset(entry);
    }
    drop_slot(group, position, is_exact);
    return taken;
}

void GroupAccess::transfer(ParserGroup& from, unsigned int position, ParserGroup& to) {
    from.prepare_index(0);
    to.prepare_index(1);
    to.entries_.make_room(1);
    transfer_back(from, position, to, to.entries_.get_count());
}

void GroupAccess::transfer_back(ParserGroup& from, unsigned int position, ParserGroup& to,
                                unsigned int to_position) noexcept {
    const bool is_exact = to.is_index_exact();
    ParserEntry* const entry = from.entries_[position];
    escape(to);
    EntryAccess::escape(entry);
    to.entries_.add(entry);
    drop_slot(from, position, from.is_index_exact());
    std::rotate(to.entries_.begin() + to_position, to.entries_.end() - 1, to.entries_.end());
    if (is_exact) {
        to.keyword_index_.open_gap(to_position, entry->get_type() != ParserEntry::TYPE_ENTRY);
    } else {
        to.rebuild_index();
    }
}

void GroupAccess::insert(ParserGroup& group, unsigned int position, ParserEntry* entry) {
    group.prepare_index(1);
    group.append(entry);
    const unsigned int last = group.entries_.get_count() - 1;
    group.move_entry(last, std::min(position, last));
}

} // namespace bk
