#include "parser/model/parser_tree_copy_impl.h"

#include "parser/model/parser_entry_impl.h"
#include "parser/model/parser_group_impl.h"
#include "parser/model/parser_value_impl.h"

#include <memory>

namespace bk {

namespace {

std::size_t text_need(const ParserValueList& values) noexcept {
    std::size_t text_size = 0;
    for (unsigned int i = 0; i < values.get_count(); ++i) {
        text_size += values[i].text_need();
    }
    return text_size;
}

} // namespace

ParserEntry* TreeCopier::copy_entry(const ParserEntry& entry) {
    const ParserValueList& values = EntryAccess::values(entry);
    const EntryFields fields{entry.get_name().get_view(), entry.get_type(), entry.get_line(),
                             entry.get_column(), entry.get_array_count()};
    std::unique_ptr<ParserEntry> copied(EntryAccess::make(fields, values.get_count(), text_need(values)));
    copied->set_template(entry.get_template());
    EntryAccess::copy_former_names(*copied, entry);
    fill_values(values, EntryAccess::values(*copied));
    return copied.release();
}

void TreeCopier::copy_values(const ParserValueList& from, ParserValueList& to) {
    if (from.get_count() != 0) {
        to.make_room(from.get_count(), text_need(from));
        fill_values(from, to);
    }
}

/// Puts the copies into the room that the list has for them.
void TreeCopier::fill_values(const ParserValueList& from, ParserValueList& to) {
    char* text = from.get_count() == 0 ? nullptr : to.text_room();
    for (unsigned int i = 0; i < from.get_count(); ++i) {
        std::unique_ptr<ParserGroup> made;
        if (const ParserGroup* group = from[i].group()) {
            made = std::make_unique<ParserGroup>(group->get_name());
            nested_.push_back({group, made.get()});
        }
        StoredValue::copy(to.room() + i, from[i], made.get(), text);
        static_cast<void>(made.release());
        to.set_count(i + 1);
    }
}

void TreeCopier::finish() {
    while (!nested_.empty()) {
        const Nested nested = nested_.back();
        nested_.pop_back();
        for (const ParserEntry* entry : nested.from->get_entries()) {
            if (entry != nullptr) {
                GroupAccess::adopt(*nested.to, copy_entry(*entry));
            }
        }
    }
}

} // namespace bk
