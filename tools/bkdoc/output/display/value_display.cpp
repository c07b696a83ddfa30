#include "output/display/value_display.h"

#include "output/display/text_display.h"
#include "parser/parser_group.h"

#include <algorithm>

namespace bkdoc {

namespace {

constexpr std::size_t short_name_limit = 60; // characters
constexpr std::size_t short_text_limit = 48; // characters
constexpr unsigned int data_limit = 16;      // bytes
constexpr std::size_t run_limit = 4;

std::string shown_string(std::string_view text) {
    const std::size_t length = count_characters(text);
    std::string result = shown_quoted(text, short_text_limit);
    if (length > short_text_limit) {
        result += " (" + grouped(length) + " characters)";
    }
    return result;
}

std::string shown_word(std::string_view text) {
    const std::size_t length = count_characters(text);
    std::string result = shown(text, short_text_limit);
    if (length > short_text_limit) {
        result += " (" + grouped(length) + " characters)";
    }
    return result;
}

std::string shown_data(const ParserEntry& entry, unsigned int i) {
    const unsigned int size = entry.get_binary_data_size(i);
    const auto* bytes = static_cast<const unsigned char*>(entry.get_binary_data(i));
    std::string result = "0x";
    for (unsigned int k = 0; k < std::min(size, data_limit); ++k) {
        result += {hexadecimal_digits[bytes[k] >> 4], hexadecimal_digits[bytes[k] & 15]};
    }
    if (size > data_limit) {
        result += "\xE2\x80\xA6";
    }
    return result + " (" + counted(size, "byte", "bytes") + ")";
}

std::string counted_type(std::size_t count, ParserValue::Type type) {
    const std::string word(type_word(type));
    return count == 1 ? word
                      : grouped(count) + " " + word + (type == ParserValue::TYPE_BINARY_DATA ? "" : "s");
}

} // namespace

std::string shown_name(const ParserEntry& entry) {
    std::string name = shown(entry.get_name().get_view(), short_name_limit);
    if (entry.is_template()) {
        name += "<" + shown(entry.get_template().get_view(), short_name_limit) + ">";
    }
    if (entry.is_array()) {
        name += "[" + (entry.get_array_count() == 0 ? "" : std::to_string(entry.get_array_count())) + "]";
    }
    return name;
}

std::string_view type_word(ParserValue::Type type) {
    switch (type) {
    case ParserValue::TYPE_GROUP:
        return "group";
    case ParserValue::TYPE_BOOL:
        return "bool";
    case ParserValue::TYPE_CHAR:
        return "char";
    case ParserValue::TYPE_INT:
        return "int";
    case ParserValue::TYPE_DOUBLE:
        return "double";
    case ParserValue::TYPE_STRING:
        return "string";
    case ParserValue::TYPE_BINARY_DATA:
        return "data";
    case ParserValue::TYPE_WORD:
        return "word";
    }
    return "unknown";
}

std::string shown_types(const ParserEntry& entry) {
    std::string result;
    std::size_t runs = 0;
    const unsigned int count = entry.get_value_count();
    for (unsigned int i = 0; i < count;) {
        const ParserValue::Type type = entry.get_value_type(i);
        unsigned int end = i + 1;
        while (end < count && entry.get_value_type(end) == type) {
            ++end;
        }
        if (type != ParserValue::TYPE_GROUP) {
            if (++runs > run_limit) {
                return result + ", \xE2\x80\xA6";
            }
            result += (result.empty() ? "" : ", ") + counted_type(end - i, type);
        }
        i = end;
    }
    return result;
}

std::string shown_kind(const ParserEntry& entry) {
    switch (entry.get_type()) {
    case ParserEntry::TYPE_KEYWORD:
        return "keyword";
    case ParserEntry::TYPE_FUNCTION_CALL:
        return "call";
    case ParserEntry::TYPE_RAW_TEXT:
        return "raw text";
    case ParserEntry::TYPE_ENTRY:
        break;
    }
    return entry.is_template() ? "template" : entry.is_array() ? "array" : "";
}

std::string shown_value(const ParserEntry& entry, unsigned int i) {
    switch (entry.get_value_type(i)) {
    case ParserValue::TYPE_GROUP:
        return "{ " + counted(entry.get_group(i)->get_entries().get_count(), "entry", "entries") + " }";
    case ParserValue::TYPE_STRING:
        return shown_string(entry.get_string(i).get_view());
    case ParserValue::TYPE_BINARY_DATA:
        return shown_data(entry, i);
    default:
        return shown_word(entry.get_word(i).get_view());
    }
}

Tone tone_of(ParserValue::Type type) {
    switch (type) {
    case ParserValue::TYPE_STRING:
        return Tone::text;
    case ParserValue::TYPE_INT:
    case ParserValue::TYPE_DOUBLE:
    case ParserValue::TYPE_CHAR:
        return Tone::number;
    case ParserValue::TYPE_BOOL:
        return Tone::flag;
    case ParserValue::TYPE_BINARY_DATA:
        return Tone::data;
    default:
        return Tone::plain;
    }
}

} // namespace bkdoc
