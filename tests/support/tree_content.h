#pragma once

#include "parser/parser_entry.h"
#include "parser/parser_group.h"
#include "tests/support/plain_text.h"

#include <bit>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// What the binary form keeps of a value, its type and converted content, as text for comparisons.
inline std::string value_content(const ParserEntry& entry, unsigned int i) {
    const ParserValue::Type type = entry.get_value_type(i);
    const std::string tag = plain(ParserValue::get_type_name(type)) + " ";
    switch (type) {
    case ParserValue::TYPE_GROUP:
        return tag;
    case ParserValue::TYPE_BOOL:
        return tag + (entry.get_bool(i) ? "yes" : "no");
    case ParserValue::TYPE_CHAR:
    case ParserValue::TYPE_INT:
        return tag + std::to_string(entry.get_int(i));
    case ParserValue::TYPE_DOUBLE:
        return tag + std::to_string(std::bit_cast<core_uint64>(entry.get_double(i)));
    default:
        return tag + plain(entry.get_word(i));
    }
}

/// The first difference between two trees in names, types and values; empty when there is none.
inline std::string content_difference(const ParserGroup& left, const ParserGroup& right) {
    std::vector<std::pair<const ParserGroup*, const ParserGroup*>> pending = {{&left, &right}};
    while (!pending.empty()) {
        const auto [one, two] = pending.back();
        pending.pop_back();
        if (one->get_entries().get_count() != two->get_entries().get_count()) {
            return "numbers of entries differ";
        }
        for (unsigned int at = 0; at < one->get_entries().get_count(); ++at) {
            const ParserEntry& a = *one->get_entries()[at];
            const ParserEntry& b = *two->get_entries()[at];
            if (!(a.get_name() == b.get_name()) || a.get_value_count() != b.get_value_count()) {
                return "names or numbers of values differ in entry '" + plain(a.get_name()) + "'";
            }
            for (unsigned int i = 0; i < a.get_value_count(); ++i) {
                if (value_content(a, i) != value_content(b, i)) {
                    return "'" + value_content(a, i) + "' and '" + value_content(b, i) +
                           "' differ in entry '" + plain(a.get_name()) + "'";
                }
                if (a.is_value_group(i)) {
                    pending.emplace_back(a.get_group(i), b.get_group(i));
                }
            }
        }
    }
    return {};
}

/// Whether a string of the tree has a NUL, which ends a string in the binary form.
inline bool has_string_with_nul(const ParserGroup& root) {
    std::vector<const ParserGroup*> pending = {&root};
    while (!pending.empty()) {
        const ParserGroup& group = *pending.back();
        pending.pop_back();
        for (const ParserEntry* entry : group.get_entries()) {
            for (unsigned int i = 0; i < entry->get_value_count(); ++i) {
                if (entry->is_value_group(i)) {
                    pending.push_back(entry->get_group(i));
                } else if (entry->is_value_string(i) &&
                           entry->get_word(i).get_view().find('\0') != std::string_view::npos) {
                    return true;
                }
            }
        }
    }
    return false;
}
