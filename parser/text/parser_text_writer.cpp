#include "parser/text/parser_text_writer_impl.h"

#include "core/reports/core_guard_impl.h"
#include "parser/model/parser_entry_impl.h"
#include "parser/model/parser_value_impl.h"
#include "parser/text/parser_text_scan_impl.h"
#include "parser/words/parser_characters_impl.h"
#include "parser/words/parser_word_rules_impl.h"

#include <algorithm>

namespace bk {

namespace {

constexpr unsigned int indentation_width = 4;

/// The character that follows the backslash in the escape for this character.
constexpr char escape_of(char character) noexcept {
    switch (character) {
    case '\t':
        return 't';
    case '\n':
        return 'n';
    case '\r':
        return 'r';
    default:
        return character;
    }
}

std::string_view bool_word(bool value) noexcept {
    return value ? "yes" : "no";
}

} // namespace

void put_plain_text(TextBuffer& out, const StoredValue& value) {
    const ParserValue::Type type = value.type();
    if (type == ParserValue::TYPE_STRING) {
        out.put(value.string());
        return;
    }
    if (value.is_spelled()) {
        out.put(value.spelling());
        return;
    }
    switch (type) {
    case ParserValue::TYPE_BOOL:
        out.put(bool_word(value.get_as_bool()));
        break;
    case ParserValue::TYPE_CHAR:
    case ParserValue::TYPE_INT:
        out.put_number(value.get_as_int());
        break;
    case ParserValue::TYPE_DOUBLE:
        out.put_number(value.get_as_double());
        break;
    case ParserValue::TYPE_BINARY_DATA:
        put_binary_literal(out, value.bytes());
        break;
    default:
        break;
    }
}

namespace {

/// When there is no room for the whole text, returns false, logs that, and leaves the output as it was.
template <class Write>
bool print(CoreString& out, bool pretty, const char* operation, Write write) {
    const unsigned int old_length = out.get_length();
    return guarded(operation, false, [&] {
        try {
            TextWriter writer(out, pretty);
            write(writer);
            return writer.finish();
        } catch (...) {
            if (out.get_length() != old_length) {
                out.resize(old_length);
            }
            throw;
        }
    });
}

} // namespace

bool print_group(CoreString& out, const ParserGroup& group, bool braces, bool pretty, unsigned int level) {
    return print(out, pretty, "ParserGroup.get_text",
                 [&](TextWriter& writer) { writer.write_group(group, braces, level); });
}

bool TextWriter::finish() const {
    if (out_.is_too_long()) {
        report_warning("ParserGroup.get_text: the text is larger than ", CoreString::max_length, " bytes\n");
    }
    return !out_.is_too_long();
}

void TextWriter::write_group(const ParserGroup& group, bool braces, unsigned int level) {
    open_group(group, braces ? Scope::braced_group : Scope::bare_group, level);
    run();
}

void TextWriter::write_entries_of(const ParserGroup& group, unsigned int first, unsigned int end) {
    frames_.push_back({group.get_entries().get_data() + first, end - first, 0, 0, 1, Scope::bare_group});
    run();
}

void TextWriter::write_entry(const ParserEntry& entry, unsigned int level) {
    const ParserEntry* const one = &entry;
    frames_.push_back({&one, 1, 0, 0, level, Scope::entry});
    run();
}

void TextWriter::write_entry_values(const ParserEntry& entry, unsigned int level) {
    const ParserEntry* const one = &entry;
    frames_.push_back({&one, 1, 0, 0, level, Scope::entry_values});
    run();
}

void TextWriter::write_value(const StoredValue& value, unsigned int level) {
    if (const ParserGroup* group = value.group()) {
        write_group(*group, true, level);
    } else {
        write_scalar(value);
    }
}

void TextWriter::open_group(const ParserGroup& group, Scope scope, unsigned int level) {
    level = std::max(level, 1u);
    if (scope == Scope::braced_group) {
        out_.put(group.get_name().get_view());
        out_.put(group.get_name().is_empty() ? "{" : " {");
        ++level;
    }
    const CoreVector<ParserEntry*>& entries = group.get_entries();
    frames_.push_back({entries.get_data(), entries.get_count(), 0, 0, level, scope});
}

void TextWriter::close_frame(const Frame& frame) {
    if (frame.scope == Scope::braced_group) {
        if (pretty_) {
            begin_line(frame.level - 2);
        } else {
            out_.put(' ');
        }
        out_.put('}');
    }
}

void TextWriter::run() {
    while (!frames_.empty()) {
        if (write_entries(frames_.back())) {
            close_frame(frames_.back());
            frames_.pop_back();
        }
    }
}

/// False when a nested group has been opened and comes first.
bool TextWriter::write_entries(Frame& frame) {
    for (; frame.next_entry < frame.entry_count; ++frame.next_entry, frame.next_value = 0) {
        const ParserEntry* const entry = frame.entries[frame.next_entry];
        if (entry == nullptr) {
            continue;
        }
        if (frame.next_value == 0) {
            begin_entry(frame, *entry);
        }
        if (!write_values(frame, *entry)) {
            return false;
        }
    }
    return true;
}

void TextWriter::begin_entry(const Frame& frame, const ParserEntry& entry) {
    if (frame.scope == Scope::braced_group || frame.scope == Scope::bare_group) {
        if (pretty_) {
            begin_line(frame.level - 1);
        } else {
            out_.put(' ');
        }
    }
    if (frame.scope != Scope::entry_values && entry.get_type() != ParserEntry::TYPE_RAW_TEXT) {
        write_head(entry);
    }
    if (entry.get_type() == ParserEntry::TYPE_FUNCTION_CALL) {
        out_.put('(');
    } else if (!entry.has_value()) {
        out_.put(' ');
        out_.put(empty_tag);
    }
}

void TextWriter::write_head(const ParserEntry& entry) {
    out_.put(entry.get_name().get_view());
    if (entry.is_template()) {
        out_.put('<');
        out_.put(entry.get_template().get_view());
        out_.put('>');
    }
    if (entry.is_array()) {
        out_.put('[');
        if (entry.get_array_count() != 0) {
            out_.put_number(entry.get_array_count());
        }
        out_.put(']');
    }
}

bool TextWriter::write_values(Frame& frame, const ParserEntry& entry) {
    const ParserEntry::Type type = entry.get_type();
    const unsigned int level = frame.level;
    while (frame.next_value < entry.get_value_count()) {
        const StoredValue& value = EntryAccess::value(entry, frame.next_value++);
        if (type == ParserEntry::TYPE_RAW_TEXT) {
            out_.put(value.get_as_string().get_view());
            continue;
        }
        if (type != ParserEntry::TYPE_FUNCTION_CALL) {
            out_.put(' ');
        } else if (frame.next_value != 1) {
            out_.put(", ");
        }
        if (const ParserGroup* group = value.group()) {
            open_group(*group, Scope::braced_group, level); // `frame` may have moved
            return false;
        }
        if (value.is_spelled() && type != ParserEntry::TYPE_FUNCTION_CALL) {
            write_spellings(frame, entry, value);
        } else {
            write_scalar(value);
        }
    }
    if (type == ParserEntry::TYPE_FUNCTION_CALL) {
        out_.put(')');
    }
    return true;
}

/// Writes the spelling of a value together with those of the values after it, as far as these follow in memory after one blank each: such
/// spellings are copied in one piece.
void TextWriter::write_spellings(Frame& frame, const ParserEntry& entry, const StoredValue& first) {
    const StoredValue* const values = EntryAccess::values(entry).side_by_side();
    if (values == nullptr) {
        out_.put(first.spelling());
        return;
    }
    const StoredValue* next = &first;
    out_.put(StoredValue::take_spellings(next, values + entry.get_value_count()));
    frame.next_value = static_cast<unsigned int>(next - values);
}

void TextWriter::write_scalar(const StoredValue& value) {
    if (value.type() == ParserValue::TYPE_STRING) {
        write_string(value.string());
    } else {
        put_plain_text(out_, value);
    }
}

void TextWriter::write_string(std::string_view text) {
    const char* const end = text.data() + text.size();
    const char* escaped = has_escapes_ ? find_escaped(text.data(), end) : end;
    if (escaped == end) {
        out_.put_quoted(text);
        return;
    }
    out_.put('"');
    for (const char* written = text.data();;) {
        out_.put({written, static_cast<std::size_t>(escaped - written)});
        if (escaped == end) {
            break;
        }
        out_.put('\\');
        out_.put(escape_of(*escaped));
        written = escaped + 1;
        escaped = find_escaped(written, end);
    }
    out_.put('"');
}

void TextWriter::begin_line(unsigned int depth) {
    out_.put_line(std::size_t{depth} * indentation_width);
}

bool print_entry(CoreString& out, const ParserEntry& entry, bool pretty, unsigned int level) {
    return print(out, pretty, "ParserEntry.get_text",
                 [&](TextWriter& writer) { writer.write_entry(entry, level); });
}

bool print_entry_values(CoreString& out, const ParserEntry& entry, bool pretty, unsigned int level) {
    return print(out, pretty, "ParserEntry.get_value_text",
                 [&](TextWriter& writer) { writer.write_entry_values(entry, level); });
}

bool print_value(CoreString& out, const StoredValue& value, bool pretty, unsigned int level) {
    return print(out, pretty, "ParserValue.get_text",
                 [&](TextWriter& writer) { writer.write_value(value, level); });
}

} // namespace bk

void ParserGroup::get_text(CoreString& out, const bool& braces, const bool& pretty,
                           const unsigned int& level) const {
    bk::print_group(out, *this, braces, pretty, level);
}

void ParserEntry::get_text(CoreString& out, const bool& pretty, const unsigned int& level) const {
    bk::print_entry(out, *this, pretty, level);
}

void ParserEntry::get_value_text(CoreString& out, const bool& pretty, const unsigned int& level) const {
    bk::print_entry_values(out, *this, pretty, level);
}

void ParserValue::get_text(CoreString& out, const bool& pretty, const unsigned int& level) const {
    bk::print_value(out, bk::StoredValue::of(*this), pretty, level);
}
