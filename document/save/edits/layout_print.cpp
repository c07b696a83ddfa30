#include "document/save/edits/layout_print_impl.h"

#include "document/ranges.h"
#include "parser/model/parser_entry_impl.h"
#include "parser/model/parser_value_impl.h"
#include "parser/text/parser_text_writer_impl.h"

namespace bk_parser {

namespace {

constexpr std::size_t printed_unit = 4; // blanks per level that the writer prints

template <class Write>
std::string print(bool pretty, bool has_escapes, Write write) {
    CoreString out;
    {
        bk::TextWriter writer(out, pretty);
        if (!has_escapes) {
            writer.write_no_escapes();
        }
        write(writer);
        static_cast<void>(writer.finish()); // an oversized text stays empty, and then fails to read back
    }
    return std::string(out.get_view());
}

/// Indents printed lines like their new place.
std::string laid_out(const std::string& printed, const PrintLayout& layout) {
    std::string result;
    for (std::size_t at = 0;;) {
        const std::size_t feed = printed.find('\n', at);
        result.append(printed, at, feed - at);
        if (feed == std::string::npos) {
            return result;
        }
        result += layout.line_break;
        result += layout.indent;
        at = feed + 1;
        for (; printed.compare(at, printed_unit, "    ") == 0; at += printed_unit) {
            result += layout.unit;
        }
    }
}

bool is_string_with_quote(const bk::StoredValue& value) noexcept {
    return value.type() == ParserValue::TYPE_STRING &&
           value.held_string().get_view().find('"') != std::string_view::npos;
}

bool has_own_quote(const ParserEntry& entry) noexcept {
    for (unsigned int i = 0; i < entry.get_value_count(); ++i) {
        if (is_string_with_quote(bk::EntryAccess::value(entry, i))) {
            return true;
        }
    }
    return false;
}

} // namespace

std::string print_lines(const ParserEntry& entry, const PrintLayout& layout) {
    return laid_out(
        print(true, layout.has_escapes, [&](bk::TextWriter& writer) { writer.write_entry(entry, 1); }),
        layout);
}

std::string print_in_line(const ParserEntry& entry, bool has_escapes) {
    return print(false, has_escapes, [&](bk::TextWriter& writer) { writer.write_entry(entry, 1); });
}

std::string print_head(const ParserEntry& entry) {
    return print(false, true, [&](bk::TextWriter& writer) { writer.write_head(entry); });
}

std::string print_value(const bk::StoredValue& value, const PrintLayout& layout) {
    return laid_out(
        print(true, layout.has_escapes, [&](bk::TextWriter& writer) { writer.write_value(value, 1); }),
        layout);
}

bool has_quote(const bk::StoredValue& value) {
    const ParserGroup* const group = value.group();
    if (group == nullptr) {
        return is_string_with_quote(value);
    }
    for (Walker walker(*group); walker.next();) {
        if (has_own_quote(walker.visit().entry())) {
            return true;
        }
    }
    return false;
}

bool has_quote(const ParserEntry& entry) {
    for (unsigned int i = 0; i < entry.get_value_count(); ++i) {
        if (has_quote(bk::EntryAccess::value(entry, i))) {
            return true;
        }
    }
    return false;
}

} // namespace bk_parser
