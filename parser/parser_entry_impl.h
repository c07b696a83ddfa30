#pragma once

#include "parser/parser_entry.h"
#include "parser/parser_value_list_impl.h"

namespace bk {

/// What the library's other parts see of an entry.
class EntryAccess {
public:
    static ParserEntry* make(std::string_view name, ParserEntry::Type type, core_ulong line,
                             core_ulong column, unsigned int array_count) {
        return new ParserEntry(name, type, line, column, array_count);
    }
    static ParserValueList& values(const ParserEntry& entry) noexcept { return entry.values_; }
    static const ParserValue& value(const ParserEntry& entry, unsigned int i) noexcept {
        return entry.values_[i];
    }
    static void set_type(ParserEntry& entry, ParserEntry::Type type) noexcept { entry.type_ = type; }
    static void copy_fields(ParserEntry& entry, const ParserEntry& other) { entry.copy_fields(other); }

    /// One more list holds the entry; one list less does, and the last one deletes it. Null is legal there.
    static void share(ParserEntry& entry) { ++entry.make_rare().other_owners; }
    static void release(ParserEntry* entry) noexcept;
};

} // namespace bk
