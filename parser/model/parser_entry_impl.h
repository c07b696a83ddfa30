#pragma once

#include "core/memory/core_prefetch_impl.h"
#include "parser/model/parser_value_list_impl.h"
#include "parser/parser_entry.h"

#include <atomic>
#include <functional>
#include <string_view>

namespace bk {

class DocumentPages;

/// What an entry is made with.
struct EntryFields {
    std::string_view name;
    ParserEntry::Type type = ParserEntry::TYPE_ENTRY;
    core_ulong line = 0;
    core_ulong column = 0;
    unsigned int array_count = ParserEntry::not_an_array;
};

/// The one of 64 bits that stands for a name.
inline unsigned long long name_bit(std::string_view name) noexcept {
    return 1ULL << (std::hash<std::string_view>()(name) % 64);
}

/// How often an entry has changed its type, in the process, plus 1. A group compares it to tell whether types of its entries may have
/// changed since it last looked at them; an entry does not know its groups.
inline constinit std::atomic<core_uint64> type_era = 1;

/// What the library's other parts see of an entry.
class EntryAccess {
public:
    /// A new entry whose list has room for `count` values and `text_size` bytes of their text.
    /// If it is small enough, all of it, a long name too, is one block: of `pages`, where there are some.
    static ParserEntry* make(const EntryFields& fields, unsigned int count, std::size_t text_size,
                             DocumentPages* pages = nullptr);
    static ParserValueList& values(const ParserEntry& entry) noexcept { return entry.values_; }
    static const ParserValue& value(const ParserEntry& entry, unsigned int i) noexcept {
        return entry.values_[i];
    }
    static void set_place(ParserEntry& entry, core_ulong line, core_ulong column) noexcept {
        entry.line_ = line;
        entry.column_ = column;
    }
    /// Whether an entry that was read may have been renamed from that name since. Of other names one in 64 is taken for a former one.
    static bool may_have_had_name(const ParserEntry& entry, std::string_view name) noexcept {
        return entry.rare_ != nullptr && (entry.rare_->former_names & name_bit(name)) != 0;
    }
    static void copy_former_names(ParserEntry& entry, const ParserEntry& other) {
        entry.copy_former_names(other);
    }
    static void copy_fields(ParserEntry& entry, const ParserEntry& other) { entry.copy_fields(other); }

    /// One more list holds the entry; one list less does, and the last one deletes it. Null is legal there.
    static void share(ParserEntry& entry) {
        escape(&entry);
        ++entry.make_rare().other_owners;
    }
    static void release(ParserEntry* entry) noexcept;

    /// Whether the entry stands in the pages of a document, and whether that knows that it owns something outside.
    static bool is_in_pages(const ParserEntry& entry) noexcept { return entry.values_.is_in_pages(); }
    static bool is_listed(const ParserEntry& entry) noexcept { return entry.values_.is_listed(); }
    static void set_listed(ParserEntry& entry) noexcept { entry.values_.set_listed(); }
    /// Of a list that is the list of an entry in pages: before the entry owns something outside.
    static void list_entry_of(ParserValueList& values) noexcept;
    /// Before an edit after which the document of the entry does not go as one. Null is legal.
    static void escape(const ParserEntry* entry) noexcept {
        if (entry != nullptr && is_in_pages(*entry)) {
            escape_from_pages(*entry);
        }
    }
    static bool is_shared(const ParserEntry& entry) noexcept {
        return entry.rare_ != nullptr && entry.rare_->other_owners != 0;
    }

private:
    static ParserEntry* make_alone(const EntryFields& fields, std::size_t bytes_behind, DocumentPages* pages);
    static ParserEntry* make_in_parts(const EntryFields& fields, unsigned int count, std::size_t text_size,
                                      DocumentPages* pages);
    static void escape_from_pages(const ParserEntry& entry) noexcept;
};

/// Asks for an entry that will be looked at soon, and for its values, which begin behind it. Null is legal.
inline void prefetch_entry(const ParserEntry* entry) noexcept {
    if (entry != nullptr) {
        prefetch(entry);
        prefetch(entry + 1);
    }
}

} // namespace bk
