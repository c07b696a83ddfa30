#include "parser/model/parser_entry_impl.h"
#include "parser/model/parser_group_impl.h"

#include <algorithm>

namespace bk {

void GroupAccess::make_index_room(ParserGroup& group, unsigned int extra) {
    const auto is_indexed = [](const ParserEntry* entry) {
        return entry != nullptr && entry->get_type() != ParserEntry::TYPE_ENTRY;
    };
    const auto count =
        static_cast<unsigned int>(std::count_if(group.entries_.begin(), group.entries_.end(), is_indexed));
    reserve_index(group, count + extra);
}

void GroupAccess::reserve_index(ParserGroup& group, unsigned int count) {
    if (count > group.keyword_index_.get_capacity()) {
        escape(group);
        group.keyword_index_.reserve(count);
    }
}

void GroupAccess::drop_slot(ParserGroup& group, unsigned int position) {
    std::copy(group.entries_.begin() + position + 1, group.entries_.end(), group.entries_.begin() + position);
    group.entries_.truncate(group.entries_.get_count() - 1);
    group.rebuild_index();
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
    make_index_room(group, 0);
    ParserEntry* const entry = group.entries_[position];
    EntryAccess::escape(entry);
    std::unique_ptr<ParserEntry> taken;
    if (EntryAccess::is_shared(*entry)) {
        taken = std::make_unique<ParserEntry>(*entry);
        EntryAccess::release(entry);
    } else {
        taken.reset(entry);
    }
    drop_slot(group, position);
    return taken;
}

void GroupAccess::transfer(ParserGroup& from, unsigned int position, ParserGroup& to) {
    make_index_room(from, 0);
    make_index_room(to, 1);
    to.entries_.make_room(1);
    transfer_back(from, position, to, to.entries_.get_count());
}

void GroupAccess::transfer_back(ParserGroup& from, unsigned int position, ParserGroup& to,
                                unsigned int to_position) noexcept {
    escape(to);
    EntryAccess::escape(from.entries_[position]);
    to.entries_.add(from.entries_[position]);
    drop_slot(from, position);
    std::rotate(to.entries_.begin() + to_position, to.entries_.end() - 1, to.entries_.end());
    to.rebuild_index();
}

void GroupAccess::insert(ParserGroup& group, unsigned int position, ParserEntry* entry) {
    make_index_room(group, 1);
    group.append(entry);
    const unsigned int last = group.entries_.get_count() - 1;
    group.move_entry(last, std::min(position, last));
}

} // namespace bk
