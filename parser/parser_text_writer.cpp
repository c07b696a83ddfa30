#include "parser/parser_text_writer_impl.h"

#include "core/core_number_impl.h"
#include "parser/parser_entry_impl.h"
#include "parser/parser_value_impl.h"
#include "parser/parser_word_rules_impl.h"

#include <algorithm>

namespace bk {

namespace {

constexpr unsigned int indentation_width = 4;

/// The letter after the backslash by which a string spells this character; 0 for one that stands for itself.
constexpr char escape_of(char character) noexcept {
    switch (character) {
    case '\t':
        return 't';
    case '\n':
        return 'n';
    case '\r':
        return 'r';
    case '"':
    case '\'':
    case '\\':
        return character;
    default:
        return '\0';
    }
}

std::string_view bool_word(bool value) noexcept {
    return value ? "yes" : "no";
}

} // namespace

void append_plain_text(CoreString& out, const ParserValue& value) {
    const ParserValue::Type type = ValueAccess::type(value);
    if (type == ParserValue::TYPE_STRING) {
        out.append(ValueAccess::string(value));
        return;
    }
    if (ValueAccess::is_spelled(value)) {
        out.append(ValueAccess::spelling(value));
        return;
    }
    switch (type) {
    case ParserValue::TYPE_BOOL:
        out.append(bool_word(value.get_as_bool()));
        break;
    case ParserValue::TYPE_CHAR:
    case ParserValue::TYPE_INT:
        out += value.get_as_int();
        break;
    case ParserValue::TYPE_DOUBLE:
        out += value.get_as_double();
        break;
    case ParserValue::TYPE_BINARY_DATA:
        append_binary_literal(out, ValueAccess::bytes(value));
        break;
    default:
        break;
    }
}

void TextWriter::write_group(const ParserGroup& group, bool braces, unsigned int level) {
    open_group(group, braces ? Scope::braced_group : Scope::bare_group, level);
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

void TextWriter::write_value(const ParserValue& value, unsigned int level) {
    if (const ParserGroup* group = ValueAccess::group(value)) {
        write_group(*group, true, level);
    } else {
        write_scalar(value);
    }
}

void TextWriter::open_group(const ParserGroup& group, Scope scope, unsigned int level) {
    level = std::max(level, 1u);
    if (scope == Scope::braced_group) {
        out_ += group.get_name();
        out_ += group.get_name().is_empty() ? "{" : " {";
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
            out_ += ' ';
        }
        out_ += '}';
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
            out_ += ' ';
        }
    }
    if (frame.scope != Scope::entry_values && entry.get_type() != ParserEntry::TYPE_RAW_TEXT) {
        write_head(entry);
    }
    if (entry.get_type() == ParserEntry::TYPE_FUNCTION_CALL) {
        out_ += '(';
    } else if (!entry.has_value()) {
        out_ += ' ';
        out_.append(empty_tag);
    }
}

void TextWriter::write_head(const ParserEntry& entry) {
    out_ += entry.get_name();
    if (entry.is_template()) {
        out_ += '<';
        out_ += entry.get_template();
        out_ += '>';
    }
    if (entry.is_array()) {
        out_ += '[';
        if (entry.get_array_count() != 0) {
            out_ += entry.get_array_count();
        }
        out_ += ']';
    }
}

bool TextWriter::write_values(Frame& frame, const ParserEntry& entry) {
    const ParserEntry::Type type = entry.get_type();
    const unsigned int level = frame.level;
    while (frame.next_value < entry.get_value_count()) {
        const ParserValue& value = EntryAccess::value(entry, frame.next_value++);
        if (type == ParserEntry::TYPE_RAW_TEXT) {
            out_ += value.get_as_string();
            continue;
        }
        if (type != ParserEntry::TYPE_FUNCTION_CALL) {
            out_ += ' ';
        } else if (frame.next_value != 1) {
            out_ += ", ";
        }
        if (const ParserGroup* group = ValueAccess::group(value)) {
            open_group(*group, Scope::braced_group, level); // `frame` may have moved
            return false;
        }
        write_scalar(value);
    }
    if (type == ParserEntry::TYPE_FUNCTION_CALL) {
        out_ += ')';
    }
    return true;
}

void TextWriter::write_scalar(const ParserValue& value) {
    if (ValueAccess::type(value) == ParserValue::TYPE_STRING) {
        write_quoted(ValueAccess::string(value));
    } else {
        append_plain_text(out_, value);
    }
}

void TextWriter::write_quoted(std::string_view text) {
    out_ += '"';
    std::size_t written = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (const char escape = escape_of(text[i])) {
            out_.append(text.substr(written, i - written));
            out_ += '\\';
            out_ += escape;
            written = i + 1;
        }
    }
    out_.append(text.substr(written));
    out_ += '"';
}

void TextWriter::begin_line(unsigned int depth) {
    out_ += '\n';
    for (unsigned int i = 0; i < depth * indentation_width; ++i) {
        out_ += ' ';
    }
}

} // namespace bk

void ParserGroup::get_text(CoreString& out, const bool& braces, const bool& pretty,
                           const unsigned int& level) const {
    bk::TextWriter(out, pretty).write_group(*this, braces, level);
}

void ParserEntry::get_text(CoreString& out, const bool& pretty, const unsigned int& level) const {
    bk::TextWriter(out, pretty).write_entry(*this, level);
}

void ParserEntry::get_value_text(CoreString& out, const bool& pretty, const unsigned int& level) const {
    bk::TextWriter(out, pretty).write_entry_values(*this, level);
}

void ParserValue::get_text(CoreString& out, const bool& pretty, const unsigned int& level) const {
    bk::TextWriter(out, pretty).write_value(*this, level);
}
