#include "document/paths/tree_cursor_impl.h"

#include "parser/model/parser_entry_impl.h"
#include "parser/model/parser_value_impl.h"

namespace bk_parser {

/// Finds the entry's current position. Returns false when the group does not list it any more.
bool TreeCursor::find_again(Level& level) noexcept {
    const auto& entries = level.group->get_entries();
    if (level.entry == nullptr) {
        return false;
    }
    if (level.position < entries.get_count() && entries[level.position] == level.entry) {
        return true;
    }
    for (unsigned int i = 0; i < entries.get_count(); ++i) {
        if (entries[i] == level.entry) {
            level.position = i;
            return true;
        }
    }
    level.entry = nullptr;
    return false;
}

bool TreeCursor::next() {
    for (;;) {
        if (ParserGroup* const group = next_group()) {
            enter(*group);
        }
        if (next_entry()) {
            return true;
        }
        if (!leave()) {
            return false;
        }
    }
}

bool TreeCursor::next_entry() noexcept {
    Level& level = levels_.back();
    if (find_again(level)) {
        ++level.position;
    }
    level.entry = nullptr;
    level.value = 0;
    const auto& entries = level.group->get_entries();
    for (; level.position < entries.get_count(); ++level.position) {
        if (entries[level.position] != nullptr) {
            level.entry = entries[level.position];
            return true;
        }
    }
    return false;
}

ParserGroup* TreeCursor::next_group() noexcept {
    Level& level = levels_.back();
    if (!find_again(level)) {
        return nullptr;
    }
    while (level.value < level.entry->get_value_count()) {
        if (ParserGroup* group = bk::EntryAccess::value(*level.entry, level.value++).group()) {
            return group;
        }
    }
    return nullptr;
}

bool TreeCursor::leave() noexcept {
    if (levels_.size() == 1) {
        return false;
    }
    levels_.pop_back();
    return true;
}

} // namespace bk_parser
