#pragma once

#include "parser/parser_entry.h"
#include "parser/parser_group.h"
#include "tests/support/bytes.h"
#include "tests/support/plain_text.h"

#include <bit>
#include <string>
#include <string_view>

/// Composes the binary form from its description, without the library.
namespace binary_form {

inline std::string group_value(std::string_view entries) {
    return std::string(1, '\0') + size_field(entries.size()) + std::string(entries);
}
inline std::string bool_value(bool value) {
    return std::string(1, '\1') + (value ? '\1' : '\0');
}
inline std::string char_value(char value) {
    return std::string(1, '\2') + value;
}
inline std::string int_value(int value) {
    return std::string(1, '\3') + little(static_cast<unsigned int>(value), 4);
}
inline std::string double_value(double value) {
    return std::string(1, '\4') + little(std::bit_cast<core_uint64>(value), 8);
}
inline std::string string_value(std::string_view value) {
    return std::string(1, '\5') + std::string(value) + '\0';
}
inline std::string data_value(std::string_view value) {
    return std::string(1, '\6') + size_field(value.size()) + std::string(value);
}
inline std::string word_value() {
    return std::string(1, '\7');
}

/// An entry without its name.
inline std::string entry_body(std::string_view values) {
    return size_field(values.size() + 1) + '\0' + std::string(values);
}
inline std::string entry(std::string_view name, std::string_view values) {
    return std::string(name) + '\0' + entry_body(values);
}
/// A group without its name.
inline std::string group(std::string_view entries) {
    return size_field(entries.size()) + std::string(entries);
}
inline std::string file(std::string_view entries) {
    return "UDFS" + group(entries);
}

inline std::string entries_of(const ParserGroup& group);

inline std::string value_of(const ParserEntry& entry, unsigned int i) {
    switch (entry.get_value_type(i)) {
    case ParserValue::TYPE_GROUP:
        return group_value(entries_of(*entry.get_group(i)));
    case ParserValue::TYPE_BOOL:
        return bool_value(entry.get_bool(i));
    case ParserValue::TYPE_CHAR:
        return char_value(entry.get_char(i));
    case ParserValue::TYPE_INT:
        return int_value(entry.get_int(i));
    case ParserValue::TYPE_DOUBLE:
        return double_value(entry.get_double(i));
    case ParserValue::TYPE_STRING:
        return string_value(plain(entry.get_string(i)));
    case ParserValue::TYPE_BINARY_DATA:
        return data_value(
            {static_cast<const char*>(entry.get_binary_data(i)), entry.get_binary_data_size(i)});
    default:
        return std::string(1, static_cast<char>(entry.get_value_type(i)));
    }
}

/// What the size field of a group counts. Recurses, because the trees of tests are shallow.
inline std::string entries_of(const ParserGroup& group) {
    std::string result;
    for (const ParserEntry* item : group.get_entries()) {
        std::string values;
        for (unsigned int i = 0; i < item->get_value_count(); ++i) {
            values += value_of(*item, i);
        }
        result += entry(plain(item->get_name()), values);
    }
    return result;
}

} // namespace binary_form
