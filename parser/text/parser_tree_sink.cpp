#include "parser/text/parser_tree_sink_impl.h"

#include "core/memory/core_assert_impl.h"
#include "core/memory/core_run_impl.h"
#include "core/reports/core_diagnostic_impl.h"
#include "parser/model/parser_entry_impl.h"
#include "parser/model/parser_group_impl.h"
#include "parser/model/parser_value_impl.h"
#include "parser/text/parser_fault_text_impl.h"

#include <bit>
#include <exception>
#include <memory>
#include <new>

namespace bk {

namespace {

std::unique_ptr<ParserGroup> make_group() {
    return std::unique_ptr<ParserGroup>(::new (allocate_in_order(sizeof(ParserGroup)))
                                            ParserGroup(CoreString()));
}

unsigned int count_values(const KnownEntry& known) noexcept {
    if (known.kind != KnownEntry::numbers) {
        return 1;
    }
    unsigned int count = 0;
    for (const KnownEntry::Numbers& row : known.rows) {
        count += static_cast<unsigned int>(std::popcount(row.starts));
    }
    return count;
}

/// All as they stand in the text, which is copied in one piece.
void fill_numbers(ParserValue* place, const KnownEntry& known, char* text) noexcept {
    copy_text(text, known.text.data(), known.text.size());
    for (const KnownEntry::Numbers& row : known.rows) {
        const char* const shown = text + (row.begin - known.text.data());
        std::uint64_t ends = row.ends;
        for (std::uint64_t starts = row.starts; starts != 0; starts &= starts - 1, ends &= ends - 1) {
            const std::uint64_t first = starts & -starts;
            const std::uint64_t end = ends & -ends;
            const bool is_double = (row.double_marks & (end - first)) != 0;
            const int at = std::countr_zero(first);
            ValueAccess::show_spelled(place++, is_double ? ParserValue::TYPE_DOUBLE : ParserValue::TYPE_INT,
                                      {shown + at, static_cast<std::size_t>(std::countr_zero(end) - at)});
        }
    }
}

} // namespace

TreeSink::TreeSink(ParserGroup& root, bool has_escapes, ParserReadObserver* observer,
                   const ParserLimits& limits)
    : has_escapes_(has_escapes), observer_(observer), limits_(limits) {
    groups_.push_back({&root, 0});
}

TreeSink::~TreeSink() {
    while (!groups_.empty()) {
        try {
            attach_entries();
        } catch (const std::exception&) { // no memory: what cannot be handed over has to go
            discard_entries();
        }
    }
}

void TreeSink::finish() {
    if (message_count_ > limits_.message_count) {
        report_warning("ParserGroup.set_text: ", message_count_ - limits_.message_count, " more messages\n");
    }
    if (!is_stopped_) {
        finish_entry();
    }
    while (!groups_.empty()) {
        attach_entries();
    }
}

void TreeSink::add_string(std::string_view word) {
    word = word.substr(1, word.size() - 2); // the quotes are not a part of it
    const bool has_escapes = has_escapes_ && word.find('\\') != std::string_view::npos;
    text_size_ +=
        has_escapes ? ValueAccess::escaped_string_need(word.size()) : ValueAccess::string_need(word.size());
    has_strings_ = true;
    values_.emplace_back(ParserValue::TYPE_STRING, word, has_escapes);
}

bool TreeSink::open_group(const Token& brace) {
    if (!may_nest(brace)) {
        return false;
    }
    std::unique_ptr<ParserGroup> group = make_group();
    ParserEntry* const entry = make_entry(1);
    list_group(entry, group.release());
    return true;
}

bool TreeSink::open_group(const KnownEntry& known, const Token& brace) {
    finish_entry();
    if (!may_nest(brace)) {
        return false;
    }
    std::unique_ptr<ParserGroup> group = make_group();
    ParserEntry* const entry = make_known(known, 1, 0);
    list_group(entry, group.release());
    return true;
}

bool TreeSink::may_nest(const Token& brace) {
    if (groups_.size() > limits_.nesting_depth) {
        is_stopped_ = true;
        report_fault(ParserReadObserver::FAULT_NESTED_TOO_DEEPLY, brace, "{");
        return false;
    }
    return true;
}

/// The group is the last value of the entry, which has room for it.
void TreeSink::list_group(ParserEntry* entry, ParserGroup* group) {
    ParserValueList& values = EntryAccess::values(*entry);
    group->set_source_entry(entry);
    ValueAccess::make_group(values.room() + values.get_count(), group);
    values.set_count(values.get_count() + 1);
    groups_.push_back({group, entries_.size()});
}

void TreeSink::add_entry(const KnownEntry& known) {
    finish_entry();
    const bool is_string = known.kind == KnownEntry::string;
    const bool is_escaped = is_string && has_escapes_ && known.text.find('\\') != std::string_view::npos;
    const unsigned int count = count_values(known);
    const std::size_t text_size = is_escaped  ? ValueAccess::escaped_string_need(known.text.size())
                                  : is_string ? ValueAccess::string_need(known.text.size())
                                              : ValueAccess::spelling_need(known.text.size());
    ParserValueList& values = EntryAccess::values(*make_known(known, count, text_size));
    char* text = values.text_room();
    if (is_escaped) {
        ValueAccess::make_escaped_string(values.room(), known.text, text);
    } else if (is_string) {
        ValueAccess::make_string(values.room(), known.text, text);
    } else if (known.kind == KnownEntry::boolean) {
        ValueAccess::make_spelled(values.room(), ParserValue::TYPE_BOOL, known.text, text);
    } else {
        fill_numbers(values.room(), known, text);
    }
    values.set_count(count);
    values.keep_plain();
}

ParserEntry* TreeSink::make_known(const KnownEntry& known, unsigned int count, std::size_t text_size) {
    const KnownEntry::Head& head = *known.head;
    std::unique_ptr<ParserEntry> made(EntryAccess::make(
        {head.name, ParserEntry::TYPE_ENTRY, head.place.line, head.column(), head.array_count}, count,
        text_size));
    if (!head.template_name.empty()) {
        made->set_template(CoreString(head.template_name));
    }
    entries_.push_back(made.get());
    return made.release();
}

void TreeSink::close_group() {
    finish_entry();
    attach_entries();
}

void TreeSink::report_fault(ParserReadObserver::Fault fault, const Token& token, std::string_view word) {
    const bool is_logged =
        logs_ && is_logged_fault(fault) && is_reported(CoreLogHandler::level_warning) && may_log(fault);
    if (!is_logged && observer_ == nullptr) {
        return;
    }
    const CoreString text = message_of(fault, word);
    if (text.is_empty() || !is_logged) {
        // There is nothing to log.
    } else if (fault == ParserReadObserver::FAULT_INVALID_NAME) {
        report_warning("ParserGroup.add_entry: ", text, "\n");
    } else {
        report_warning("ParserGroup.set_text: (", token.line, ":", token.column, ") ", text, "\n");
    }
    if (observer_ != nullptr) {
        observer_->fault_found(fault, token.start, token.length, text);
    }
}

bool TreeSink::may_log(ParserReadObserver::Fault fault) noexcept {
    return fault == ParserReadObserver::FAULT_NESTED_TOO_DEEPLY || ++message_count_ <= limits_.message_count;
}

/// Empty when there is no memory for it: the parse goes on.
CoreString TreeSink::message_of(ParserReadObserver::Fault fault, std::string_view word) const {
    try {
        return fault_text(fault, shown_word(word));
    } catch (const std::bad_alloc&) {
        return {};
    }
}

CoreString TreeSink::shown_word(std::string_view word) const {
    if (!has_escapes_ || !is_string_word(word)) {
        return CoreString(word);
    }
    return decoded(word);
}

ParserEntry* TreeSink::make_entry(unsigned int extra_values) {
    has_entry_ = false;
    const auto count = static_cast<unsigned int>(values_.size()) + extra_values;
    const std::string_view run = text_run();
    std::unique_ptr<ParserEntry> made(
        EntryAccess::make(fields_, count, run.empty() ? text_size_ : run.size()));
    if (!template_name_.empty()) {
        made->set_template(CoreString(template_name_));
    }
    if (!values_.empty()) {
        ParserValueList& values = EntryAccess::values(*made);
        fill_values(values, run);
        BK_ASSERT(values.get_count() == values_.size());
        if (extra_values == 0 && !has_binary_data_) {
            values.keep_plain();
        }
    }
    entries_.push_back(made.get());
    values_.clear();
    text_size_ = 0;
    has_strings_ = false;
    has_binary_data_ = false;
    return made.release();
}

/// The text from the first value to the last, and the quote behind that if it is a string, when it is kept as it stands:
/// as a rule values stand one blank apart, and one copy is made faster than many. Else nothing.
std::string_view TreeSink::text_run() const noexcept {
    constexpr std::size_t spare = 2; // bytes between two values
    if (values_.empty() || (values_.size() == 1 && !are_scalars())) {
        return {};
    }
    const PendingValue& first = values_.front();
    const PendingValue& last = values_.back();
    const char* const end = last.begin + last.size + (last.type == ParserValue::TYPE_STRING ? 1 : 0);
    const auto size = static_cast<std::size_t>(end - first.begin);
    return size <= text_size_ + spare * values_.size() ? std::string_view(first.begin, size)
                                                       : std::string_view();
}

/// Puts the values into the room that the list has for them.
void TreeSink::fill_values(ParserValueList& values, std::string_view run) const {
    if (run.empty()) {
        fill_apart(values);
        return;
    }
    copy_text(values.text_room(), run.data(), run.size());
    if (are_scalars()) {
        fill_scalar_run(values);
    } else {
        fill_run(values);
    }
}

void TreeSink::fill_apart(ParserValueList& values) const {
    ParserValue* place = values.room();
    char* text = values.text_room();
    for (const PendingValue& value : values_) {
        fill_value(place++, value, text, false);
        values.set_count(values.get_count() + 1);
    }
    BK_ASSERT(text <= values.text_room() + text_size_);
}

/// The text of all stands in its room.
void TreeSink::fill_run(ParserValueList& values) const {
    ParserValue* place = values.room();
    for (const PendingValue& value : values_) {
        char* text = values.text_room() + (value.begin - values_.front().begin);
        fill_value(place++, value, text, true);
        values.set_count(values.get_count() + 1);
    }
}

/// The same of scalars.
void TreeSink::fill_scalar_run(ParserValueList& values) const noexcept {
    ParserValue* place = values.room();
    const char* const text = values.text_room();
    const char* const run = values_.front().begin;
    for (const PendingValue& value : values_) {
        ValueAccess::show_spelled(place++, value.type, {text + (value.begin - run), value.size});
    }
    values.set_count(static_cast<unsigned int>(values_.size()));
}

/// `text` is where the value's text is to stand, if it is to stand outside the value, or stands already.
void TreeSink::fill_value(ParserValue* place, const PendingValue& value, char*& text, bool is_copied) {
    if (value.has_escapes) {
        ValueAccess::make_escaped_string(place, value.text(), text);
    } else if (value.type == ParserValue::TYPE_STRING) {
        ValueAccess::make_string(place, value.text(), text);
    } else if (value.type == ParserValue::TYPE_BINARY_DATA) {
        unsigned int size = 0;
        void* const data = decode_binary_literal(value.text(), size);
        ValueAccess::make_binary_data(place, data, size);
    } else if (is_copied) {
        ValueAccess::show_spelled(place, value.type, {text, value.size});
    } else {
        ValueAccess::make_spelled(place, value.type, value.text(), text);
    }
}

void TreeSink::attach_entries() {
    const OpenGroup& open = groups_.back();
    GroupAccess::append(*open.group, entries_.data() + open.first_entry,
                        static_cast<unsigned int>(entries_.size() - open.first_entry));
    entries_.resize(open.first_entry);
    groups_.pop_back();
}

/// Deletes the entries of the innermost group.
void TreeSink::discard_entries() noexcept {
    const std::size_t first = groups_.back().first_entry;
    groups_.pop_back();
    while (entries_.size() > first) {
        delete entries_.back();
        entries_.pop_back();
    }
}

} // namespace bk
