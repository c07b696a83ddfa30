#include "parser/parser_group.h"

#include "core/core_memory.h"
#include "core/memory/core_nothrow_impl.h"
#include "core/memory/runs/core_run_impl.h"
#include "core/memory/runs/core_vector_access_impl.h"
#include "core/reports/core_diagnostic_impl.h"
#include "core/reports/core_guard_impl.h"
#include "parser/model/drop/parser_document_pages_impl.h"
#include "parser/model/parser_entry_impl.h"
#include "parser/model/parser_group_impl.h"
#include "parser/model/parser_tree_copy_impl.h"
#include "parser/model/parser_value_impl.h"
#include "parser/words/parser_word_rules_impl.h"

#include <bit>
#include <memory>
#include <vector>

namespace {

constexpr std::size_t largest_list_in_pages = 1024;

} // namespace

ParserGroup::ParserGroup(const CoreString& name) : name_(name) {}

ParserGroup::ParserGroup(const ParserGroup& other) : ParserGroup(CoreString()) {
    set(other);
}

ParserGroup::~ParserGroup() {
    clear();
}

ParserGroup& ParserGroup::operator=(const ParserGroup& other) {
    if (this == &other) {
        return *this;
    }
    // It takes the old entries, and is destroyed last, because `other` may be inside one of them.
    ParserGroup shared(other.name_);
    for (ParserEntry* entry : other.entries_) {
        if (entry != nullptr) {
            bk::EntryAccess::share(*entry);
        }
        try {
            shared.entries_.add(entry);
        } catch (...) {
            bk::EntryAccess::release(entry);
            throw;
        }
    }
    shared.keyword_index_ = other.keyword_index_;
    ParserEntry* const source_entry = other.source_entry_;
    swap_content(shared);
    source_entry_ = source_entry;
    return *this;
}

void ParserGroup::clear() {
    bk::GroupAccess::leave_list(*this);
    bk::DoomedDocuments doomed(*this);
    for (ParserEntry* entry : entries_) {
        if (!doomed.take(entry)) {
            bk::EntryAccess::release(entry);
        }
    }
    bk::GroupAccess::give_lists_back(*this);
}

void ParserGroup::set(const ParserGroup& other) {
    if (this == &other) {
        return;
    }
    ParserGroup copied(other.name_);
    bk::TreeCopier copier;
    for (const ParserEntry* entry : other.entries_) {
        if (entry != nullptr) {
            bk::GroupAccess::adopt(copied, copier.copy_entry(*entry));
        }
    }
    copier.finish();
    swap_content(copied);
}

void ParserGroup::swap_content(ParserGroup& other) noexcept {
    bk::GroupAccess::escape(*this);
    std::swap(name_, other.name_);
    entries_.swap(other.entries_);
    keyword_index_.swap(other.keyword_index_);
}

void ParserGroup::append(ParserEntry* entry) {
    bk::GroupAccess::escape(*this);
    const unsigned int keyword_count = keyword_index_.get_count();
    if (entry->get_type() != ParserEntry::TYPE_ENTRY) {
        keyword_index_.add(entries_.get_count());
    }
    try {
        entries_.add(entry);
    } catch (...) {
        keyword_index_.truncate(keyword_count);
        throw;
    }
}

void bk::GroupAccess::list_entries(ParserGroup& group, ParserEntry* const* entries, unsigned int count) {
    // The index comes first: the entries are then added all at once or not at all.
    if (count != 0 && !is_in_pages(group) && EntryAccess::is_in_pages(*entries[0])) {
        group.keyword_index_.set_lists_document();
    }
    const unsigned int first = group.entries_.get_count();
    const unsigned int first_keyword = group.keyword_index_.get_count();
    try {
        for (unsigned int i = 0; i < count; ++i) {
            const ParserEntry::Type type = entries[i]->get_type();
            if (type == ParserEntry::TYPE_KEYWORD) {
                group.keyword_index_.add(first + i);
            } else if (type != ParserEntry::TYPE_ENTRY) {
                group.keyword_index_.set_era(0); // a call has an ordinal until the index is rebuilt
            }
        }
        group.entries_.add_range(entries, count);
    } catch (...) {
        group.keyword_index_.truncate(first_keyword);
        throw;
    }
}

void bk::GroupAccess::fill(ParserGroup& group, ParserEntry* const* entries, unsigned int count,
                           DocumentPages& pages) {
    const std::size_t size = std::bit_ceil(std::size_t{count}) * sizeof(ParserEntry*);
    const bool has_list = group.entries_.get_capacity() != 0; // from an attempt that ran out of memory
    if (count != 0 && size <= largest_list_in_pages && !has_list) {
        VectorAccess::take_storage(group.entries_, pages.allocate(size),
                                   static_cast<unsigned int>(size / sizeof(ParserEntry*)));
    }
    list_entries(group, entries, count);
    if (has_lists_outside(group)) {
        pages.list(group);
    }
}

bool bk::GroupAccess::has_lists_outside(const ParserGroup& group) noexcept {
    return group.entries_.get_capacity() > largest_list_in_pages / sizeof(ParserEntry*) ||
           group.keyword_index_.get_capacity() != 0;
}

std::unique_ptr<ParserGroup> bk::GroupAccess::make(DocumentPages* pages) {
    void* const place =
        pages == nullptr ? allocate_in_order(sizeof(ParserGroup)) : pages->allocate(sizeof(ParserGroup));
    std::unique_ptr<ParserGroup> group(::new (place) ParserGroup(CoreString()));
    if (pages != nullptr) {
        group->keyword_index_.set_in_pages();
    }
    return group;
}

namespace {

/// Returns null, and logs a message, when the name is refused.
std::unique_ptr<ParserEntry> make_entry(const CoreString& name, const core_ulong& line,
                                        const core_ulong& column) {
    bool is_keyword = false;
    if (!bk::is_entry_name(name.get_view(), is_keyword)) {
        bk::report_warning("ParserGroup.add_entry: '", name, "' is not a valid entry name\n");
        return nullptr;
    }
    return std::make_unique<ParserEntry>(
        name, is_keyword ? ParserEntry::TYPE_KEYWORD : ParserEntry::TYPE_ENTRY, line, column);
}

} // namespace

ParserEntry* ParserGroup::add_entry(const CoreString& name, const core_ulong& line,
                                    const core_ulong& column) {
    std::unique_ptr<ParserEntry> entry = make_entry(name, line, column);
    if (entry != nullptr) {
        append(entry.get());
    }
    return entry.release();
}

ParserEntry* ParserGroup::add_entry(const ParserEntry& entry) {
    auto* const adopted = const_cast<ParserEntry*>(&entry);
    append(adopted);
    return adopted;
}

ParserGroup* ParserGroup::add_group(const CoreString& name) {
    return bk::GroupAccess::add_group(*this, make_entry(name, 0, 0), nullptr);
}

ParserGroup* ParserGroup::add_group(ParserGroup* group) {
    return bk::GroupAccess::add_group(*this, make_entry(group->get_name(), 0, 0), group);
}

ParserGroup* bk::GroupAccess::add_group(ParserGroup& group, std::unique_ptr<ParserEntry> entry,
                                        ParserGroup* value) {
    if (entry == nullptr) {
        return nullptr;
    }
    escape(group);
    if (entry->get_type() == ParserEntry::TYPE_KEYWORD) {
        group.keyword_index_.make_room();
    }
    group.entries_.make_room(1);
    ParserGroup* const added = entry->add_group(value);
    group.append(entry.release());
    return added;
}

/// With k keywords before an entry, its position is its ordinal plus k. The i-th keyword position less i is the number
/// of entries before that keyword, which never falls: k is how many of these are not above the ordinal.
unsigned int ParserGroup::position_of(unsigned int ordinal) const noexcept {
    unsigned int low = 0;
    unsigned int high = keyword_index_.get_count();
    while (low < high) {
        const unsigned int middle = low + (high - low) / 2;
        if (keyword_index_[middle] - middle <= ordinal) {
            low = middle + 1;
        } else {
            high = middle;
        }
    }
    return ordinal + low;
}

ParserEntry* ParserGroup::get_entry(const unsigned int& ordinal) const {
    return entries_[position_of(ordinal)];
}

ParserEntry* ParserGroup::get_entry(const CoreString& name) const {
    unsigned int keyword = 0;
    for (unsigned int position = 0; position < entries_.get_count(); ++position) {
        if (keyword < keyword_index_.get_count() && keyword_index_[keyword] == position) {
            ++keyword;
        } else if (entries_[position] != nullptr && entries_[position]->get_name() == name) {
            return entries_[position];
        }
    }
    return nullptr;
}

ParserEntry* ParserGroup::get_keyword(const CoreString& name) const {
    for (const unsigned int position : keyword_index_) {
        if (entries_[position] != nullptr && entries_[position]->get_name() == name) {
            return entries_[position];
        }
    }
    return nullptr;
}

namespace {

/// Walks the entries that have ordinals, of a group and of the groups below, depth first.
class EntrySearch {
public:
    EntrySearch(const CoreString& name, bool recursive) : name_(name), recursive_(recursive) {}

    CoreVector<ParserEntry*> run(const ParserGroup& group) {
        places_.push_back({&group, 0, 0});
        while (!places_.empty()) {
            if (!advance(places_.back())) {
                places_.pop_back();
            }
        }
        return std::move(found_);
    }

private:
    struct Place {
        const ParserGroup* group;
        unsigned int ordinal;
        unsigned int value; // of the entry at `ordinal`, while its values are being searched
    };

    /// Returns false when the group is done.
    bool advance(Place& place) {
        const ParserGroup& group = *place.group;
        for (; place.ordinal < group.get_entry_count(); ++place.ordinal, place.value = 0) {
            ParserEntry* const entry = group.get_entry(place.ordinal);
            if (entry == nullptr) {
                continue;
            }
            if (place.value == 0 && entry->get_name() == name_) {
                found_.add(entry);
            } else if (recursive_ && descend(place, *entry)) {
                return true;
            }
        }
        return false;
    }

    bool descend(Place& place, const ParserEntry& entry) {
        while (place.value < entry.get_value_count()) {
            if (const ParserGroup* nested = bk::EntryAccess::value(entry, place.value++).group()) {
                places_.push_back({nested, 0, 0});
                return true;
            }
        }
        return false;
    }

    const CoreString& name_;
    bool recursive_;
    CoreVector<ParserEntry*> found_;
    std::vector<Place> places_;
};

} // namespace

CoreVector<ParserEntry*> ParserGroup::get_entries(const CoreString& name, bool recursive) const {
    CoreVector<ParserEntry*> found;
    bk::completed("ParserGroup.get_entries", [&] { found = EntrySearch(name, recursive).run(*this); });
    return found;
}

unsigned int ParserGroup::get_first_entry_index(ParserEntry::Type type) const {
    for (unsigned int position = 0; position < entries_.get_count(); ++position) {
        if (entries_[position] != nullptr && entries_[position]->get_type() == type) {
            return position;
        }
    }
    return 0xFFFFFFFFu;
}

void* ParserGroup::operator new(std::size_t size) {
    return CoreMemory::allocate(size);
}

void* ParserGroup::operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return bk::allocate_or_null(size);
}

void ParserGroup::operator delete(void* block, std::size_t size) noexcept {
    CoreMemory::release(block, size);
}

void ParserGroup::operator delete(void* block, const std::nothrow_t&) noexcept {
    CoreMemory::release(block, sizeof(ParserGroup));
}
