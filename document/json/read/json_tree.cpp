#include "document/json/read/json_tree_impl.h"

#include "document/json/json_words_impl.h"
#include "parser/model/drop/parser_teardown_impl.h"
#include "parser/model/parser_entry_impl.h"
#include "parser/model/parser_group_impl.h"
#include "parser/model/parser_value_impl.h"

#include <memory>
#include <new>
#include <utility>

namespace bk_parser {

namespace {

bool is_spelled(ParserValue::Type type) noexcept {
    switch (type) {
    case ParserValue::TYPE_BOOL:
    case ParserValue::TYPE_CHAR:
    case ParserValue::TYPE_INT:
    case ParserValue::TYPE_DOUBLE:
    case ParserValue::TYPE_WORD:
        return true;
    default:
        return false;
    }
}

} // namespace

JsonTree::~JsonTree() {
    for (const Pending& pending : pending_) {
        bk::destroy_group(pending.group);
    }
    for (ParserEntry* const entry : entries_) {
        delete entry;
    }
}

void JsonTree::begin_entry(std::string_view name, bool is_of_source) {
    const std::size_t first_text = texts_.size();
    open_.push_back({keep(name, is_of_source),
                     {},
                     usual_kind(name),
                     ParserEntry::not_an_array,
                     pending_.size(),
                     first_text,
                     levels_.size()});
}

void JsonTree::add_value(ParserValue::Type type, std::string_view text, bool is_of_source) {
    pending_.push_back({type, keep(text, is_of_source), nullptr});
}

void JsonTree::end_entry() {
    const OpenEntry& open = open_.back();
    std::size_t text_size = 0;
    for (std::size_t i = open.first_value; i < pending_.size(); ++i) {
        text_size += text_need(pending_[i]);
    }
    const auto count = static_cast<unsigned int>(pending_.size() - open.first_value);
    std::unique_ptr<ParserEntry> entry(bk::EntryAccess::make(
        {.name = view(open.name), .type = open.kind, .array_count = open.array_count}, count, text_size));
    if (!open.template_name.empty()) {
        entry->set_template(CoreString(open.template_name));
    }
    entries_.push_back(nullptr);
    fill_values(*entry, open.first_value);
    entries_.back() = entry.release();
    texts_.resize(open.first_text);
    open_.pop_back();
}

void JsonTree::open_group(std::string_view name) {
    pending_.push_back({ParserValue::TYPE_GROUP, {}, nullptr});
    levels_.push_back({nullptr, entries_.size()});
    ParserGroup* const group = new ParserGroup(CoreString(name));
    pending_.back().group = group;
    levels_.back().group = group;
}

void JsonTree::close_group() {
    const Level level = levels_.back();
    bk::GroupAccess::append(*level.group, entries_.data() + level.first_entry,
                            static_cast<unsigned int>(entries_.size() - level.first_entry));
    entries_.resize(level.first_entry);
    levels_.pop_back();
}

void JsonTree::rename_group(std::string_view name) {
    ParserGroup*& group = pending_.back().group;
    auto renamed = std::make_unique<ParserGroup>(CoreString(name));
    group->move_entries(*renamed, 0u);
    bk::destroy_group(std::exchange(group, renamed.release()));
}

void JsonTree::finish() {
    while (!levels_.empty()) {
        if (is_in_entry()) {
            end_entry();
        }
        close_group();
    }
}

JsonTree::Text JsonTree::keep(std::string_view text, bool is_of_source) {
    if (is_of_source) {
        return {text.data(), 0, text.size()};
    }
    const std::size_t offset = texts_.size();
    texts_ += text;
    return {nullptr, offset, text.size()};
}

std::string_view JsonTree::view(const Text& text) const noexcept {
    return {text.source != nullptr ? text.source : texts_.data() + text.offset, text.size};
}

std::size_t JsonTree::text_need(const Pending& pending) const noexcept {
    if (pending.type == ParserValue::TYPE_STRING) {
        return bk::StoredValue::string_need(pending.text.size);
    }
    return is_spelled(pending.type) ? bk::StoredValue::spelling_need(pending.text.size) : 0;
}

void JsonTree::make_value(void* place, Pending& pending, char*& text) {
    const std::string_view content = view(pending.text);
    if (pending.type == ParserValue::TYPE_GROUP) {
        bk::StoredValue::make_group(place, std::exchange(pending.group, nullptr));
    } else if (pending.type == ParserValue::TYPE_STRING) {
        bk::StoredValue::make_string(place, content, text);
    } else if (pending.type == ParserValue::TYPE_BINARY_DATA) {
        const auto size = static_cast<unsigned int>(content.size());
        bk::StoredValue::make_binary_data(place, size == 0 ? nullptr : bk::copy_bytes(content.data(), size),
                                          size);
    } else if (is_spelled(pending.type)) {
        bk::StoredValue::make_spelled(place, pending.type, content, text);
    } else {
        ::new (place) bk::StoredValue(pending.type);
    }
}

void JsonTree::fill_values(ParserEntry& entry, std::size_t first) {
    if (pending_.size() == first) {
        return;
    }
    ParserValueList& values = bk::EntryAccess::values(entry);
    bk::StoredValue* const places = values.room();
    char* text = values.text_room();
    bool is_plain = true;
    for (std::size_t i = first; i < pending_.size(); ++i) {
        const auto place = static_cast<unsigned int>(i - first);
        is_plain = is_plain && pending_[i].type != ParserValue::TYPE_GROUP &&
                   pending_[i].type != ParserValue::TYPE_BINARY_DATA &&
                   !bk::StoredValue::is_kept_apart(pending_[i].type, pending_[i].text.size);
        make_value(places + place, pending_[i], text);
        values.set_count(place + 1);
        if (ParserGroup* const group = places[place].group()) {
            group->set_source_entry(&entry);
        }
    }
    if (is_plain) {
        values.mark_self_contained();
    }
    pending_.resize(first);
}

} // namespace bk_parser
