#include "parser/text/parser_tree_sink_impl.h"

#include "core/memory/core_assert_impl.h"
#include "core/reports/core_diagnostic_impl.h"
#include "parser/model/parser_entry_impl.h"
#include "parser/model/parser_group_impl.h"
#include "parser/model/parser_value_impl.h"
#include "parser/text/parser_fault_text_impl.h"

#include <exception>
#include <memory>
#include <new>

namespace bk {

namespace {

/// Makes all values of the entry, and copies their text in one piece.
void fill_numbers(StoredValue* place, const KnownEntry& known, char* text) noexcept {
    const char* const begin = known.text.data();
    copy_text(text, begin, known.text.size());
    known.for_each_number([&](std::string_view word, bool is_double) {
        StoredValue::show_spelled(place++, is_double ? ParserValue::TYPE_DOUBLE : ParserValue::TYPE_INT,
                                  {text + (word.data() - begin), word.size()});
    });
}

} // namespace

TreeSink::TreeSink(ParserGroup& root, bool has_escapes, ParserReadObserver* observer,
                   const ParserLimits& limits, std::size_t text_size)
    : has_escapes_(has_escapes), observer_(observer), limits_(limits), pages_(text_size) {
    groups_.push_back({&root, 0});
}

TreeSink::~TreeSink() {
    while (!groups_.empty()) {
        try {
            attach_entries();
        } catch (const std::exception&) { // no memory to hand the entries over: deletes them
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
    pages_.finish();
}

void TreeSink::add_string(std::string_view word) {
    word = word.substr(1, word.size() - 2); // without the quotes
    const bool has_escapes = has_escapes_ && word.find('\\') != std::string_view::npos;
    text_size_ +=
        has_escapes ? StoredValue::escaped_string_need(word.size()) : StoredValue::string_need(word.size());
    owns_memory_ |= StoredValue::is_kept_apart(ParserValue::TYPE_STRING, word.size());
    values_.emplace_back(ParserValue::TYPE_STRING, word, has_escapes);
}

bool TreeSink::open_group(const Token& brace) {
    if (!may_nest(brace)) {
        return false;
    }
    std::unique_ptr<ParserGroup> group = GroupAccess::make(pages_.get());
    ParserEntry* const entry = make_entry(1);
    list_group(entry, group.release());
    return true;
}

bool TreeSink::open_group(const KnownEntry& known, const Token& brace) {
    finish_entry();
    if (!may_nest(brace)) {
        return false;
    }
    std::unique_ptr<ParserGroup> group = GroupAccess::make(pages_.get());
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
    StoredValue::make_group(values.room() + values.get_count(), group);
    values.set_count(values.get_count() + 1);
    groups_.push_back({group, entries_.size()});
}

void TreeSink::add_entry(const KnownEntry& known) {
    finish_entry();
    const bool is_string = known.kind == KnownEntry::string;
    const bool is_escaped = is_string && has_escapes_ && known.text.find('\\') != std::string_view::npos;
    if (is_string && StoredValue::is_kept_apart(ParserValue::TYPE_STRING, known.text.size())) [[unlikely]] {
        add_word_by_word(known);
        return;
    }
    const unsigned int count = known.value_count();
    const std::size_t text_size = is_escaped  ? StoredValue::escaped_string_need(known.text.size())
                                  : is_string ? StoredValue::string_need(known.text.size())
                                              : known.text.size();
    ParserValueList& values = EntryAccess::values(*make_known(known, count, text_size));
    char* text = values.text_room();
    if (is_escaped) {
        StoredValue::make_escaped_string(values.room(), known.text, text);
    } else if (is_string) {
        StoredValue::make_string(values.room(), known.text, text);
    } else if (known.kind == KnownEntry::boolean) {
        StoredValue::make_spelled(values.room(), ParserValue::TYPE_BOOL, known.text, text);
    } else {
        fill_numbers(values.room(), known, text);
    }
    values.set_count(count);
    values.mark_self_contained();
}

/// Adds an entry with a string that is too long for the entry's block.
void TreeSink::add_word_by_word(const KnownEntry& known) {
    if (begin_entry(known.entry_head(), {0, 0, known.head->place.line, known.head->column()})) {
        add_string(known.word());
        finish_entry();
    }
}

ParserEntry* TreeSink::make_known(const KnownEntry& known, unsigned int count, std::size_t text_size) {
    const KnownEntry::Head& head = *known.head;
    std::unique_ptr<ParserEntry> made(EntryAccess::make(
        {head.name, ParserEntry::TYPE_ENTRY, head.place.line, head.column(), head.array_count}, count,
        text_size, pages_.get()));
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

/// Returns the empty text when memory runs out, so that the parse goes on.
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
    std::unique_ptr<ParserEntry> made(EntryAccess::make(fields_, count, text_size_, pages_.get()));
    if (!template_name_.empty()) {
        made->set_template(CoreString(template_name_));
    }
    if (!values_.empty()) {
        ParserValueList& values = EntryAccess::values(*made);
        if (owns_memory_) {
            values.list_entry();
        }
        fill_values(values);
        BK_ASSERT(values.get_count() == values_.size());
        if (extra_values == 0 && !owns_memory_) {
            values.mark_self_contained();
        }
    }
    entries_.push_back(made.get());
    values_.clear();
    text_size_ = 0;
    owns_memory_ = false;
    return made.release();
}

/// Puts the values into the room that the list has for them.
void TreeSink::fill_values(ParserValueList& values) const {
    StoredValue* place = values.room();
    char* text = values.text_room();
    for (const PendingValue& value : values_) {
        fill_value(place++, value, text);
        values.set_count(values.get_count() + 1);
    }
    BK_ASSERT(text <= values.text_room() + text_size_);
}

/// `text` is the place for the value's text, when that does not fit inside the value.
void TreeSink::fill_value(StoredValue* place, const PendingValue& value, char*& text) {
    if (value.has_escapes) {
        StoredValue::make_escaped_string(place, value.text(), text);
    } else if (value.type == ParserValue::TYPE_STRING) {
        StoredValue::make_string(place, value.text(), text);
    } else if (value.type == ParserValue::TYPE_BINARY_DATA) {
        unsigned int size = 0;
        void* const data = decode_binary_literal(value.text(), size);
        StoredValue::make_binary_data(place, data, size);
    } else {
        StoredValue::make_spelled(place, value.type, value.text(), text);
        *text++ = ' '; // values one blank apart are later printed in one piece
    }
}

void TreeSink::attach_entries() {
    const OpenGroup& open = groups_.back();
    ParserEntry* const* const entries = entries_.data() + open.first_entry;
    const auto count = static_cast<unsigned int>(entries_.size() - open.first_entry);
    if (pages_.get() != nullptr && groups_.size() != 1) {
        GroupAccess::fill(*open.group, entries, count, *pages_.get());
    } else {
        GroupAccess::append(*open.group, entries, count);
    }
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
