#include "document/json/write/json_writer_impl.h"

#include "document/json/json_words_impl.h"
#include "document/json/write/json_names_impl.h"
#include "document/json/write/json_scalar_impl.h"
#include "parser/model/parser_entry_impl.h"

namespace bk_parser {

namespace {

/// Whether JSON spells the value without a tag: as a number, true or false.
bool is_bare(ParserValue::Type type, std::string_view word) noexcept {
    switch (type) {
    case ParserValue::TYPE_BOOL:
        return word == "yes" || word == "no";
    case ParserValue::TYPE_INT:
        return json_number_of(word) == JsonNumber::whole;
    case ParserValue::TYPE_DOUBLE:
        // The reader turns a large E into a small one, so the spelling would be lost.
        return json_number_of(word) == JsonNumber::broken && word.find('E') == std::string_view::npos;
    default:
        return false;
    }
}

std::string_view key_of(ParserValue::Type type) noexcept {
    switch (type) {
    case ParserValue::TYPE_BOOL:
        return bool_key;
    case ParserValue::TYPE_CHAR:
        return char_key;
    case ParserValue::TYPE_INT:
        return int_key;
    case ParserValue::TYPE_DOUBLE:
        return double_key;
    default:
        return word_key;
    }
}

bool has_usual_head(const ParserEntry& entry) noexcept {
    return entry.get_type() == usual_kind(entry.get_name().get_view()) && !entry.is_template() &&
           !entry.is_array();
}

} // namespace

bool JsonWriter::write(const ParserGroup& root) {
    open_group(root);
    const bool is_whole = run();
    if (indent_ != 0) {
        out_.put('\n');
    }
    return is_whole;
}

bool JsonWriter::write_lines(const ParserGroup& root) {
    for (ParserEntry* const& entry : root.get_entries()) {
        if (entry == nullptr) {
            continue;
        }
        levels_.push_back({&entry, 1, Shape::line, false});
        if (!run()) {
            return false;
        }
        out_.put('\n');
    }
    return true;
}

bool JsonWriter::run() {
    while (!levels_.empty() && out_.offer()) {
        advance();
    }
    return levels_.empty();
}

/// Continues in the innermost group with the current entry or the next one, or ends the group.
void JsonWriter::advance() {
    Level& level = levels_.back();
    while (level.entry < level.count && level.entries[level.entry] == nullptr) {
        ++level.entry;
    }
    if (level.entry == level.count) {
        close_group();
        return;
    }
    const ParserEntry& entry = *level.entries[level.entry];
    if (!level.is_in_entry) {
        begin_entry(level, entry);
    }
    if (write_values(level, entry)) {
        end_entry(levels_.back());
    }
}

void JsonWriter::open_group(const ParserGroup& group) {
    const bool is_wrapped = !levels_.empty() && !group.get_name().is_empty();
    if (is_wrapped) {
        out_.put('{');
        put_key(group_key);
        put_text(group.get_name().get_view());
        put_comma();
        put_key(entries_key);
    }
    const Shape shape = has_distinct_names(group) ? Shape::object : Shape::array;
    out_.put(shape == Shape::object ? '{' : '[');
    const CoreVector<ParserEntry*>& entries = group.get_entries();
    levels_.push_back({entries.get_data(), entries.get_count(), shape, is_wrapped});
}

void JsonWriter::close_group() {
    const Level level = levels_.back();
    levels_.pop_back();
    if (level.shape != Shape::line) {
        if (!level.is_first) {
            break_line();
        }
        out_.put(level.shape == Shape::object ? '}' : ']');
    }
    if (level.is_wrapped) {
        out_.put('}');
    }
}

void JsonWriter::begin_entry(Level& level, const ParserEntry& entry) {
    if (level.shape != Shape::line) {
        if (!level.is_first) {
            out_.put(',');
        }
        break_line();
    }
    if (level.shape != Shape::object) {
        out_.put('{');
    }
    put_name(entry.get_name().get_view());
    level.is_first = false;
    level.is_in_entry = true;
    level.value = 0;
    level.has_head = !has_usual_head(entry);
    if (level.has_head) {
        put_head(entry);
    }
    level.has_list = entry.get_value_count() != 1;
    if (!level.has_list) {
        const ParserGroup* const group = bk::EntryAccess::value(entry, 0).group();
        // An array here would be read as a list of values.
        level.has_list = group != nullptr && group->get_name().is_empty() && !has_distinct_names(*group);
    }
    if (level.has_list) {
        out_.put('[');
    }
}

/// Writes an entry up to its values.
void JsonWriter::put_head(const ParserEntry& entry) {
    out_.put('{');
    if (entry.get_type() != usual_kind(entry.get_name().get_view())) {
        put_key(kind_key);
        const std::string_view word = kind_word(entry.get_type());
        if (word.empty()) {
            out_.put(std::to_string(static_cast<unsigned int>(entry.get_type())));
        } else {
            out_.put_string(word);
        }
        put_comma();
    }
    if (entry.is_template()) {
        put_key(template_key);
        put_text(entry.get_template().get_view());
        put_comma();
    }
    if (entry.is_array()) {
        put_key(array_key);
        out_.put(std::to_string(entry.get_array_count()));
        put_comma();
    }
    put_key(values_key);
}

/// Returns false when it opened a group, which is written first.
bool JsonWriter::write_values(Level& level, const ParserEntry& entry) {
    while (level.value < entry.get_value_count()) {
        const bk::StoredValue& value = bk::EntryAccess::value(entry, level.value);
        if (level.value++ != 0) {
            put_comma();
        }
        const ParserGroup* const group = value.group();
        if (group != nullptr) {
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

void JsonWriter::end_entry(Level& level) {
    if (level.has_list) {
        out_.put(']');
    }
    if (level.has_head) {
        out_.put('}');
    }
    if (level.shape != Shape::object) {
        out_.put('}');
    }
    level.is_in_entry = false;
    ++level.entry;
}

/// Writes any value except a group.
void JsonWriter::put_value(const bk::StoredValue& value) {
    const ParserValue::Type type = value.type();
    switch (type) {
    case ParserValue::TYPE_GROUP: // a cleared group value
        out_.put("{}");
        break;
    case ParserValue::TYPE_STRING:
        put_text(value.held_string().get_view());
        break;
    case ParserValue::TYPE_BINARY_DATA:
        out_.put('{');
        put_key(binary_key);
        out_.put_base64(value.bytes());
        out_.put('}');
        break;
    case ParserValue::TYPE_BOOL:
    case ParserValue::TYPE_CHAR:
    case ParserValue::TYPE_INT:
    case ParserValue::TYPE_DOUBLE:
    case ParserValue::TYPE_WORD:
        put_scalar(type, ScalarWord::as_spelled(value).view());
        break;
    default:
        out_.put('{');
        put_key(type_key);
        out_.put(std::to_string(static_cast<unsigned int>(type)));
        out_.put('}');
        break;
    }
}

void JsonWriter::put_scalar(ParserValue::Type type, std::string_view word) {
    if (is_bare(type, word)) {
        out_.put(word == "yes" ? "true" : word == "no" ? "false" : word);
        return;
    }
    out_.put('{');
    put_key(key_of(type));
    const bool is_number = type != ParserValue::TYPE_WORD && type != ParserValue::TYPE_BOOL;
    if (is_number && json_number_of(word) == JsonNumber::whole) {
        out_.put(word);
    } else {
        put_text(word);
    }
    out_.put('}');
}

void JsonWriter::put_name(std::string_view name) {
    if (name.starts_with(json_mark) || !is_utf8(name)) {
        out_.put_byte_escaped(escaped_name_mark, name);
    } else {
        out_.put_string(name);
    }
    out_.put(indent_ == 0 ? ":" : ": ");
}

/// Writes a string, or an object with an escaped string when it has bytes that are not UTF-8.
void JsonWriter::put_text(std::string_view text) {
    if (is_utf8(text)) {
        out_.put_string(text);
        return;
    }
    out_.put('{');
    put_key(string_key);
    out_.put_byte_escaped({}, text);
    out_.put('}');
}

void JsonWriter::put_key(std::string_view key) {
    out_.put_string(key);
    out_.put(indent_ == 0 ? ":" : ": ");
}

void JsonWriter::break_line() {
    if (indent_ != 0) {
        out_.break_line(levels_.size(), indent_);
    }
}

} // namespace bk_parser
