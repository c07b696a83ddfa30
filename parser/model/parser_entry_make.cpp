#include "core/core_memory.h"
#include "core/memory/core_run_impl.h"
#include "core/text/core_string_impl.h"
#include "parser/model/parser_entry_impl.h"

#include <memory>
#include <new>

ParserEntry::ParserEntry(const bk::EntryFields& fields) noexcept
    : line_(fields.line), column_(fields.column), array_count_(fields.array_count), type_(fields.type) {}

namespace bk {

namespace {

/// What stands in an entry's block cannot be given back before the entry: a long list that grows would leave much behind.
constexpr std::size_t largest_embedding_block = 1024;

/// A name that is too long to stand inside its string has its text, and a NUL, behind the values.
std::size_t name_need(std::string_view name) noexcept {
    return name.size() <= CoreString::inline_capacity ? 0 : name.size() + 1;
}

} // namespace

ParserEntry* EntryAccess::make(const EntryFields& fields, unsigned int count, std::size_t text_size) {
    const std::size_t values_size = count == 0 ? 0 : ParserValueList::room_size(count, text_size);
    const std::size_t size = sizeof(ParserEntry) + values_size + name_need(fields.name);
    if (size > largest_embedding_block) {
        std::unique_ptr<ParserEntry> entry(new ParserEntry(fields));
        entry->name_ = CoreString(fields.name);
        entry->values_.make_room(count, text_size);
        return entry.release();
    }
    char* const block = static_cast<char*>(allocate_in_order(size));
    auto* const entry = ::new (block) ParserEntry(fields);
    if (count != 0) {
        entry->values_.take_room(block + sizeof(ParserEntry), count, text_size);
    }
    const char* name = fields.name.data();
    if (name_need(fields.name) != 0) {
        char* const behind_values = block + sizeof(ParserEntry) + values_size;
        copy_text(behind_values, name, fields.name.size());
        behind_values[fields.name.size()] = '\0';
        name = behind_values;
    }
    StringAccess::show(entry->name_, {name, fields.name.size()});
    return entry;
}

} // namespace bk
