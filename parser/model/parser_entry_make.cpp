#include "core/core_memory.h"
#include "core/memory/runs/core_run_impl.h"
#include "core/text/core_string_impl.h"
#include "parser/model/drop/parser_document_pages_impl.h"
#include "parser/model/parser_entry_impl.h"

#include <memory>
#include <new>

ParserEntry::ParserEntry(const bk::EntryFields& fields) noexcept
    : line_(fields.line), column_(fields.column), array_count_(fields.array_count), type_(fields.type) {}

namespace bk {

namespace {

/// What is in an entry's block cannot be freed before the entry: a long list that grows would leave much unused memory there.
constexpr std::size_t largest_embedding_block = 1024;

/// A name that is too long to be stored inside its string is put after the values, with a NUL.
std::size_t name_need(std::string_view name) noexcept {
    return name.size() <= CoreString::inline_capacity ? 0 : name.size() + 1;
}

} // namespace

/// Creates an entry without a name, with this number of bytes after it.
inline ParserEntry* EntryAccess::make_alone(const EntryFields& fields, std::size_t bytes_after,
                                            DocumentPages* pages) {
    const std::size_t size = sizeof(ParserEntry) + bytes_after;
    auto* const entry =
        ::new (pages == nullptr ? allocate_in_order(size) : pages->allocate(size)) ParserEntry(fields);
    if (pages != nullptr) {
        entry->values_.set_in_pages();
    }
    return entry;
}

ParserEntry* EntryAccess::make(const EntryFields& fields, unsigned int count, std::size_t text_size,
                               DocumentPages* pages) {
    const std::size_t values_size = count == 0 ? 0 : ParserValueList::room_size(count, text_size);
    const std::size_t name_size = name_need(fields.name);
    if (sizeof(ParserEntry) + values_size + name_size > largest_embedding_block) {
        return make_in_parts(fields, count, text_size, pages);
    }
    ParserEntry* const entry = make_alone(fields, values_size + name_size, pages);
    char* const behind = reinterpret_cast<char*>(entry + 1);
    if (count != 0) {
        entry->values_.take_room(behind, count, text_size);
    }
    const char* name = fields.name.data();
    if (name_size != 0) {
        char* const behind_values = behind + values_size;
        copy_text(behind_values, name, fields.name.size());
        behind_values[fields.name.size()] = '\0';
        name = behind_values;
    }
    StringAccess::show(entry->name_, {name, fields.name.size()});
    return entry;
}

ParserEntry* EntryAccess::make_in_parts(const EntryFields& fields, unsigned int count, std::size_t text_size,
                                        DocumentPages* pages) {
    std::unique_ptr<ParserEntry> entry(pages == nullptr ? new ParserEntry(fields)
                                                        : make_alone(fields, 0, pages));
    entry->values_.list_entry();
    entry->name_ = CoreString(fields.name);
    entry->values_.make_room(count, text_size);
    return entry.release();
}

} // namespace bk
