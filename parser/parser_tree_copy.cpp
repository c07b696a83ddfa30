#include "parser/parser_tree_copy_impl.h"

#include "parser/parser_entry_impl.h"
#include "parser/parser_group_impl.h"
#include "parser/parser_value_impl.h"

#include <memory>

namespace bk {

ParserEntry* TreeCopier::copy_entry(const ParserEntry& entry) {
    auto copied = std::make_unique<ParserEntry>(entry.get_name(), entry.get_type(), entry.get_line(),
                                                entry.get_column());
    EntryAccess::copy_fields(*copied, entry);
    copy_values(EntryAccess::values(entry), EntryAccess::values(*copied));
    return copied.release();
}

void TreeCopier::copy_values(const ParserValueList& from, ParserValueList& to) {
    const unsigned int count = from.get_count();
    if (count == 0) {
        return;
    }
    std::size_t text_size = 0;
    for (unsigned int i = 0; i < count; ++i) {
        text_size += ValueAccess::text_need(from[i]);
    }
    to.make_room(count, text_size);
    char* text = to.text_room();
    for (unsigned int i = 0; i < count; ++i) {
        ParserGroup* made = nullptr;
        if (const ParserGroup* group = ValueAccess::group(from[i])) {
            made = new ParserGroup(group->get_name());
            nested_.push_back({group, made});
        }
        ValueAccess::copy(to.room() + i, from[i], made, text);
        to.set_count(i + 1);
    }
}

void TreeCopier::finish() {
    while (!nested_.empty()) {
        const Nested nested = nested_.back();
        nested_.pop_back();
        for (const ParserEntry* entry : nested.from->get_entries()) {
            if (entry != nullptr) {
                GroupAccess::append(*nested.to, copy_entry(*entry));
            }
        }
    }
}

} // namespace bk
