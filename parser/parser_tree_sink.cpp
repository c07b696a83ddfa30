#include "parser/parser_tree_sink_impl.h"

#include "core/core_diagnostic_impl.h"
#include "parser/parser_entry_impl.h"
#include "parser/parser_fault_text_impl.h"
#include "parser/parser_group_impl.h"
#include "parser/parser_value_impl.h"

#include <exception>
#include <memory>

namespace bk {

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

bool TreeSink::begin_entry(const EntryHead& head, const Token& token) {
    finish_entry();
    bool is_keyword = false;
    if (head.had_suffix && !is_entry_name(head.name, is_keyword)) {
        // A word can be a name with its suffix and none without, as in "yes[2]".
        report_fault(ParserReadObserver::FAULT_INVALID_NAME, token, head.name);
        return false;
    }
    has_entry_ = true;
    head_ = head;
    token_ = token;
    type_ = head.is_keyword ? ParserEntry::TYPE_KEYWORD : ParserEntry::TYPE_ENTRY;
    return true;
}

// The value is made where it stands: copying what was just stored in parts would wait for the stores.
void TreeSink::add_value(ParserWord::Type kind, std::string_view word) {
    if (kind == ParserWord::TYPE_STRING) {
        word = word.substr(1, word.size() - 2); // the quotes are not a part of it
        const bool has_escapes = has_escapes_ && word.find('\\') != std::string_view::npos;
        text_size_ += has_escapes ? ValueAccess::escaped_string_need(word.size())
                                  : ValueAccess::string_need(word.size());
        values_.emplace_back(ParserValue::TYPE_STRING, word, has_escapes);
        return;
    }
    if (kind != ParserWord::TYPE_BINARY_DATA) {
        text_size_ += ValueAccess::spelling_need(word.size());
    }
    values_.emplace_back(value_type_of(kind), word, false);
}

bool TreeSink::open_group(const Token& brace) {
    if (groups_.size() > limits_.nesting_depth) {
        is_stopped_ = true;
        report_fault(ParserReadObserver::FAULT_NESTED_TOO_DEEPLY, brace, "{");
        return false;
    }
    auto group = std::make_unique<ParserGroup>(CoreString());
    ParserEntry* const entry = make_entry(1);
    ParserValueList& values = EntryAccess::values(*entry);
    group->set_source_entry(entry);
    ParserGroup* const opened = group.release();
    ValueAccess::make_group(values.room() + values.get_count(), opened);
    values.set_count(values.get_count() + 1);
    groups_.push_back({opened, entries_.size()});
    return true;
}

void TreeSink::close_group() {
    finish_entry();
    attach_entries();
}

void TreeSink::report_fault(ParserReadObserver::Fault fault, const Token& token, std::string_view word) {
    const bool is_logged =
        is_logged_fault(fault) && is_reported(CoreLogHandler::level_warning) && may_log(fault);
    if (!is_logged && observer_ == nullptr) {
        return;
    }
    const CoreString text = fault_text(fault, shown_word(word));
    if (is_logged && fault == ParserReadObserver::FAULT_INVALID_NAME) {
        report_warning("ParserGroup.add_entry: ", text, "\n");
    } else if (is_logged) {
        report_warning("ParserGroup.set_text: (", token.line, ":", token.column, ") ", text, "\n");
    }
    if (observer_ != nullptr) {
        observer_->fault_found(fault, token.start, token.length, text);
    }
}

bool TreeSink::may_log(ParserReadObserver::Fault fault) noexcept {
    return fault == ParserReadObserver::FAULT_NESTED_TOO_DEEPLY || ++message_count_ <= limits_.message_count;
}

CoreString TreeSink::shown_word(std::string_view word) const {
    if (!has_escapes_ || !is_string_word(word)) {
        return CoreString(word);
    }
    CoreString decoded;
    decode_escapes(word, decoded);
    return decoded;
}

void TreeSink::finish_entry() {
    if (has_entry_) {
        make_entry(0);
    }
}

ParserEntry* TreeSink::make_entry(unsigned int extra_values) {
    has_entry_ = false;
    const auto count = static_cast<unsigned int>(values_.size()) + extra_values;
    std::unique_ptr<ParserEntry> made(EntryAccess::make(
        {head_.name, type_, token_.line, token_.column, head_.array_count}, count, text_size_));
    if (!head_.template_name.empty()) {
        made->set_template(CoreString(head_.template_name));
    }
    if (!values_.empty()) {
        fill_values(EntryAccess::values(*made), extra_values == 0);
    }
    entries_.push_back(made.get());
    values_.clear();
    text_size_ = 0;
    return made.release();
}

/// Puts the values into the room that the list has for them.
void TreeSink::fill_values(ParserValueList& values, bool are_all) const {
    ParserValue* place = values.room();
    char* text = values.text_room();
    bool is_plain = are_all;
    for (const PendingValue& value : values_) {
        if (value.has_escapes) {
            ValueAccess::make_escaped_string(place, value.text(), text);
        } else if (value.type == ParserValue::TYPE_STRING) {
            ValueAccess::make_string(place, value.text(), text);
        } else if (value.type == ParserValue::TYPE_BINARY_DATA) {
            unsigned int size = 0;
            void* const data = decode_binary_literal(value.text(), size);
            ValueAccess::make_binary_data(place, data, size);
            is_plain = false;
        } else {
            ValueAccess::make_spelled(place, value.type, value.text(), text);
        }
        ++place;
        values.set_count(values.get_count() + 1);
    }
    if (is_plain) {
        values.keep_plain();
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
