#pragma once

#include "parser/parser_entry.h"
#include "parser/parser_group.h"

#include <string>
#include <string_view>

/// The names of a group's entries in document order, each after a blank: " (a) #k (b)". Names of entries with an ordinal are in
/// parentheses. Asks the group for the ordinals, not the entries for their types.
inline std::string outline(const ParserGroup& group) {
    std::string result;
    unsigned int ordinal = 0;
    for (const ParserEntry* entry : group.get_entries()) {
        const std::string name = entry == nullptr ? "null" : std::string(entry->get_name().get_view());
        const bool ordinary = ordinal < group.get_entry_count() && group.get_entry(ordinal) == entry;
        ordinal += ordinary ? 1 : 0;
        result += ordinary ? " (" + name + ")" : " " + name;
    }
    return ordinal == group.get_entry_count() ? result : result + " and ordinals that are not in order";
}

/// Adds entries with these names, which are separated by blanks.
inline void add_names(ParserGroup& group, std::string_view names) {
    while (!names.empty()) {
        const std::size_t end = names.find(' ');
        group.add_entry(CoreString(names.substr(0, end)), 0, 0);
        names.remove_prefix(end == std::string_view::npos ? names.size() : end + 1);
    }
}
