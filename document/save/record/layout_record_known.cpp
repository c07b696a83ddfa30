#include "document/save/record/layout_record_impl.h"
#include "document/save/record/value_text_impl.h"
#include "parser/model/parser_entry_impl.h"
#include "parser/model/parser_value_impl.h"

// Entries that the grammar cut in one step. Nearly all of them are unchanged, so they are first compared as a whole.

namespace bk_parser {

namespace {

/// Whether the values have the types and spellings of the numbers, and their spellings are adjacent in memory as in the text. Compares all
/// spellings at once: comparing them one by one makes the save of a large document 3% slower.
bool are_spelled_in_a_row(const bk::KnownEntry& known, const bk::StoredValue* values, unsigned int count) {
    const bk::StoredValue* next = values;
    const bk::StoredValue* const end = values + count;
    if (!values->is_spelled() || bk::StoredValue::take_spellings(next, end) != known.text || next != end) {
        return false;
    }
    bool has_types = true;
    known.for_each_number([&](std::string_view, bool is_double) {
        const ParserValue::Type type = is_double ? ParserValue::TYPE_DOUBLE : ParserValue::TYPE_INT;
        has_types = has_types && values != end && (values++)->type() == type;
    });
    return has_types && values == end;
}

bool has_same_numbers(const bk::KnownEntry& known, const ParserEntry& entry) {
    const ParserValueList& values = bk::EntryAccess::values(entry);
    const unsigned int count = values.get_count();
    if (values.side_by_side() != nullptr && are_spelled_in_a_row(known, values.side_by_side(), count)) {
        return true;
    }
    unsigned int at = 0;
    bool is_same = true;
    known.for_each_number([&](std::string_view word, bool is_double) {
        const ParserWord::Type kind = is_double ? ParserWord::TYPE_DOUBLE : ParserWord::TYPE_INT;
        is_same = is_same && at < count && reads_as(kind, word, values[at], false);
        ++at;
    });
    return is_same && at == count;
}

bool has_same_values(const bk::KnownEntry& known, const ParserEntry& entry, bool has_escapes) {
    if (known.kind == bk::KnownEntry::numbers) {
        return has_same_numbers(known, entry);
    }
    const ParserWord::Type kind =
        known.kind == bk::KnownEntry::string ? ParserWord::TYPE_STRING : ParserWord::TYPE_BOOL;
    return entry.get_value_count() == 1 &&
           reads_as(kind, known.word(), bk::EntryAccess::value(entry, 0), has_escapes);
}

} // namespace

void LayoutRecord::add_entry(const bk::KnownEntry& known) {
    const bk::KnownEntry::Head& head = *known.head;
    see_word({head.name.data(), static_cast<std::size_t>(head.end - head.name.data())});
    Level& level = innermost();
    const ParserEntry* const entry = level.now.expected(head.place.line, head.column(), head.name);
    if (entry == nullptr || entry->get_type() != ParserEntry::TYPE_ENTRY ||
        entry->get_array_count() != head.array_count ||
        entry->get_template().get_view() != head.template_name ||
        !has_same_values(known, *entry, has_escapes_)) {
        add_in_parts(known);
        return;
    }
    finish_entry(read_before_word_, before_word_);
    level.has_entry = true;
    level.is_same = true;
    level.same_name = {last_begin_, last_end_};
    level.same_index = level.now.take_expected();
    const std::string_view text = known.kind == bk::KnownEntry::numbers ? known.text : known.word();
    last_end_ = offset(text.data() + text.size());
    read_end_ = last_end_;
}

void LayoutRecord::add_in_parts(const bk::KnownEntry& known) {
    begin_entry(known.entry_head(), known.token(text_.data()));
    if (known.kind == bk::KnownEntry::numbers) {
        known.for_each_number([this](std::string_view word, bool is_double) {
            add_value(is_double ? ParserWord::TYPE_DOUBLE : ParserWord::TYPE_INT, word);
        });
    } else {
        add_value(known.kind == bk::KnownEntry::string ? ParserWord::TYPE_STRING : ParserWord::TYPE_BOOL,
                  known.word());
    }
}

bool LayoutRecord::open_group(const bk::KnownEntry& known, const bk::Token& brace) {
    const bk::KnownEntry::Head& head = *known.head;
    see_word({head.name.data(), static_cast<std::size_t>(head.end - head.name.data())});
    begin_entry(known.entry_head(), known.token(text_.data()));
    see_word(text_.substr(brace.start, brace.length));
    return open_group(brace);
}

} // namespace bk_parser
