#include "document/json/write/json_plain_impl.h"

#include "document/json/write/json_scalar_impl.h"
#include "parser/model/parser_entry_impl.h"

#include <algorithm>
#include <utility>

namespace bk_parser {

bool PlainJsonWriter::write(const ParserGroup& root) {
    open_group(root);
    while (!levels_.empty() && out_.offer()) {
        advance();
    }
    if (indent_ != 0) {
        out_.put('\n');
    }
    return levels_.empty();
}

std::vector<PlainJsonWriter::Item> PlainJsonWriter::items_of(const ParserGroup& group) {
    const CoreVector<ParserEntry*>& entries = group.get_entries();
    std::vector<Item> items;
    items.reserve(entries.get_count());
    for (unsigned int i = 0; i < entries.get_count(); ++i) {
        if (entries[i] != nullptr) {
            items.push_back({entries[i], i, i});
        }
    }
    const auto name = [](const Item& item) { return item.entry->get_name().get_view(); };
    std::sort(items.begin(), items.end(), [&name](const Item& a, const Item& b) {
        const int order = name(a).compare(name(b));
        return order != 0 ? order < 0 : a.position < b.position;
    });
    for (std::size_t i = 1; i < items.size(); ++i) {
        if (name(items[i]) == name(items[i - 1])) {
            items[i].first = items[i - 1].first;
        }
    }
    std::sort(items.begin(), items.end(), [](const Item& a, const Item& b) {
        return std::pair(a.first, a.position) < std::pair(b.first, b.position);
    });
    return items;
}

bool PlainJsonWriter::begins_name(const Level& level) noexcept {
    return level.item == 0 || level.items[level.item - 1].first != level.items[level.item].first;
}

bool PlainJsonWriter::ends_name(const Level& level) noexcept {
    return level.item + 1 == level.items.size() ||
           level.items[level.item + 1].first != level.items[level.item].first;
}

void PlainJsonWriter::open_group(const ParserGroup& group) {
    out_.put('{');
    levels_.push_back({items_of(group)});
}

/// Continues in the innermost group with the current entry or the next one, or ends the group.
void PlainJsonWriter::advance() {
    Level& level = levels_.back();
    if (level.item == level.items.size()) {
        const bool is_empty = level.items.empty();
        levels_.pop_back();
        if (!is_empty) {
            break_line();
        }
        out_.put('}');
        return;
    }
    if (!level.is_in_entry) {
        begin_entry(level);
    }
    if (write_values(level)) {
        end_entry(levels_.back());
    }
}

void PlainJsonWriter::begin_entry(Level& level) {
    const ParserEntry& entry = *level.items[level.item].entry;
    const bool is_first = begins_name(level);
    if (is_first) {
        if (level.item != 0) {
            out_.put(',');
        }
        break_line();
        out_.put_string(entry.get_name().get_view());
        out_.put(indent_ == 0 ? ":" : ": ");
        if (!ends_name(level)) {
            out_.put('[');
        }
    } else {
        put_comma();
    }
    level.is_in_entry = true;
    level.value = 0;
    if (entry.get_value_count() == 0) {
        out_.put("null");
    } else if (entry.get_value_count() > 1) {
        out_.put('[');
    }
}

/// Returns false when it opened a group, which is written first.
bool PlainJsonWriter::write_values(Level& level) {
    const ParserEntry& entry = *level.items[level.item].entry;
    while (level.value < entry.get_value_count()) {
        const bk::StoredValue& value = bk::EntryAccess::value(entry, level.value);
        if (level.value++ != 0) {
            put_comma();
        }
        if (const ParserGroup* const group = value.group()) {
            open_group(*group); // invalidates `level`
            return false;
        }
        put_value(value);
        if (!out_.offer()) {
            return false;
        }
    }
    return true;
}

void PlainJsonWriter::end_entry(Level& level) {
    if (level.items[level.item].entry->get_value_count() > 1) {
        out_.put(']');
    }
    if (ends_name(level) && !begins_name(level)) {
        out_.put(']');
    }
    level.is_in_entry = false;
    ++level.item;
}

/// Writes any value except a group.
void PlainJsonWriter::put_value(const bk::StoredValue& value) {
    switch (value.type()) {
    case ParserValue::TYPE_BOOL:
        out_.put(value.get_as_bool() ? "true" : "false");
        break;
    case ParserValue::TYPE_CHAR:
    case ParserValue::TYPE_INT:
    case ParserValue::TYPE_DOUBLE:
        out_.put(ScalarWord::as_read(value).view());
        break;
    case ParserValue::TYPE_STRING:
        out_.put_string(value.held_string().get_view());
        break;
    case ParserValue::TYPE_BINARY_DATA:
        out_.put_base64(value.bytes());
        break;
    case ParserValue::TYPE_WORD:
        out_.put_string(ScalarWord::as_read(value).view());
        break;
    default:
        out_.put("null");
        break;
    }
}

void PlainJsonWriter::break_line() {
    if (indent_ != 0) {
        out_.break_line(levels_.size(), indent_);
    }
}

} // namespace bk_parser
