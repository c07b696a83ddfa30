#include "parser/model/parser_group_search_impl.h"

#include "parser/model/parser_entry_impl.h"
#include "parser/model/parser_value_impl.h"

#include <algorithm>

namespace bk {

bool GroupSearch::is_new(const void* object) {
    if (seen_.exists(object)) {
        return false;
    }
    seen_.add(object);
    return true;
}

bool GroupSearch::enter(const ParserEntry& entry) {
    const ParserValueList& values = EntryAccess::values(entry);
    if (!values.may_hold_groups() || (EntryAccess::is_shared(entry) && !is_new(&entry))) {
        return false;
    }
    const bool are_shared = values.side_by_side() == nullptr;
    for (unsigned int i = 0; i < values.get_count(); ++i) {
        const ParserGroup* const group = values[i].group();
        if (group == &sought_) {
            return true;
        }
        if (group != nullptr && (!are_shared || is_new(group))) {
            open_.push_back(group);
        }
    }
    return false;
}

bool GroupSearch::run() {
    while (!open_.empty()) {
        const ParserGroup* const group = open_.back();
        open_.pop_back();
        for (const ParserEntry* entry : group->get_entries()) {
            if (entry != nullptr && enter(*entry)) {
                return true;
            }
        }
    }
    return false;
}

bool is_only_holder(const ParserGroup& group, const ParserGroup& held) noexcept {
    const ParserEntry* const source = held.get_source_entry();
    const CoreVector<ParserEntry*>& entries = group.get_entries();
    if (source == nullptr || std::find(entries.begin(), entries.end(), source) == entries.end() ||
        EntryAccess::is_shared(*source)) {
        return false;
    }
    const ParserValueList& values = EntryAccess::values(*source);
    const StoredValue* const first = values.side_by_side();
    return first != nullptr && std::any_of(first, first + values.get_count(),
                                           [&](const StoredValue& value) { return value.group() == &held; });
}

} // namespace bk
