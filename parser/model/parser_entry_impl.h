#pragma once

#include "core/memory/core_prefetch_impl.h"
#include "parser/model/lists/parser_value_list_impl.h"
#include "parser/parser_entry.h"

#include <atomic>
#include <functional>
#include <string_view>

namespace bk {

class DocumentPages;

/// The fields with which an entry is created.
struct EntryFields {
    std::string_view name;
    ParserEntry::Type type = ParserEntry::TYPE_ENTRY;
    core_ulong line = 0;
    core_ulong column = 0;
    unsigned int array_count = ParserEntry::not_an_array;
};

/// Maps a name to one of 64 bits.
inline unsigned long long name_bit(std::string_view name) noexcept {
    return 1ULL << (std::hash<std::string_view>()(name) % 64);
}

/// Counts, from 1, how often any entry of the process has changed its type. A group compares two readings of it to tell whether the types
/// of its entries may have changed since it last looked at them: an entry does not know the groups that list it.
inline constinit std::atomic<core_uint64> type_era = 1;

/// Gives the rest of the library access to an entry.
class EntryAccess {
public:
    /// Creates an entry whose list has room for `count` values and `text_size` bytes of their text. A small entry is a single block
    /// that also has its values, their text and a long name. The block is from `pages` unless that is null.
    static ParserEntry* make(const EntryFields& fields, unsigned int count, std::size_t text_size,
                             DocumentPages* pages = nullptr);
    static ParserValueList& values(const ParserEntry& entry) noexcept { return entry.values_; }
    static const StoredValue& value(const ParserEntry& entry, unsigned int i) noexcept {
        return entry.values_[i];
    }
    static void set_place(ParserEntry& entry, core_ulong line, core_ulong column) noexcept {
        entry.line_ = line;
        entry.column_ = column;
    }
    /// Whether an entry that was read may have had this name before. One in 64 of the other names is taken for a former name.
    static bool may_have_had_name(const ParserEntry& entry, std::string_view name) noexcept {
        return entry.rare_ != nullptr && (entry.rare_->former_names & name_bit(name)) != 0;
    }
    static void copy_former_names(ParserEntry& entry, const ParserEntry& other) {
        entry.copy_former_names(other);
    }
    static void copy_fields(ParserEntry& entry, const ParserEntry& other) { entry.copy_fields(other); }

    /// `share` counts one more list that holds the entry. `release` counts one less, and deletes the entry after the last; it takes null.
    static void share(ParserEntry& entry) {
        escape(&entry);
        ++entry.make_rare().other_owners;
    }
    static void release(ParserEntry* entry) noexcept;

    /// Whether the entry is in the pages of a document, and whether the document has it in its list of those that own memory elsewhere.
    static bool is_in_pages(const ParserEntry& entry) noexcept { return entry.values_.is_in_pages(); }
    static bool is_listed(const ParserEntry& entry) noexcept { return entry.values_.is_listed(); }
    static void set_listed(ParserEntry& entry) noexcept { entry.values_.set_listed(); }
    /// Call it before the entry of this list, which is in pages, comes to own memory elsewhere.
    static void list_entry_of(ParserValueList& values) noexcept;
    /// Call it before an edit after which the document of the entry cannot be freed as a whole. Takes null.
    static void escape(const ParserEntry* entry) noexcept {
        if (entry != nullptr && is_in_pages(*entry)) {
            escape_from_pages(*entry);
        }
    }
    static bool is_shared(const ParserEntry& entry) noexcept {
        return entry.rare_ != nullptr && entry.rare_->other_owners != 0;
    }

private:
    static ParserEntry* make_alone(const EntryFields& fields, std::size_t bytes_after, DocumentPages* pages);
    static ParserEntry* make_in_parts(const EntryFields& fields, unsigned int count, std::size_t text_size,
                                      DocumentPages* pages);
    static void escape_from_pages(const ParserEntry& entry) noexcept;
};

/// Prefetches an entry, and the values that follow it in memory. Takes null.
inline void prefetch_entry(const ParserEntry* entry) noexcept {
    if (entry != nullptr) {
        prefetch(entry);
        prefetch(entry + 1);
    }
}

} // namespace bk
