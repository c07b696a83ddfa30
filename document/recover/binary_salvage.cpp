#include "document/recover/binary_salvage_impl.h"

#include "parser/binary/parser_binary_impl.h"
#include "parser/binary/parser_binary_scalar_impl.h"
#include "parser/model/parser_entry_impl.h"
#include "parser/model/parser_group_impl.h"

#include <algorithm>
#include <memory>
#include <utility>

namespace bk_parser {

namespace {

constexpr std::size_t most_path_bytes = 200;

/// Adds a new group. When adding it throws, the unique_ptr still owns the group.
ParserGroup* add_group(ParserEntry& entry) {
    auto group = std::make_unique<ParserGroup>(CoreString());
    entry.add_group(group.get());
    return group.release();
}

} // namespace

void BinarySalvage::run(ParserGroup& root) {
    constexpr std::size_t head_size = bk::binary_tag.size() + size_width;
    if (data_.size() < head_size) {
        lost_.cut_off(data_.size(), head_size - data_.size());
        return;
    }
    const std::size_t end = group_end(bk::binary_tag.size(), data_.size(), true);
    position_ = head_size;
    levels_.push_back({});
    levels_.back().group = &root;
    levels_.back().group_end = end;
    while (!levels_.empty()) {
        meter_.reach(position_);
        step();
    }
    if (position_ < data_.size()) {
        lost_.add(position_, data_.size() - position_, "after the end of the document");
    }
    if (announced_end_ > data_.size()) {
        lost_.cut_off(data_.size(), announced_end_ - data_.size());
    }
}

void BinarySalvage::step() {
    const Level& level = levels_.back();
    if (level.entry == nullptr) {
        if (position_ >= level.group_end) {
            levels_.pop_back();
        } else {
            begin_entry();
        }
        return;
    }
    const std::size_t end = end_of_values(level);
    if (position_ == level.entry_end || position_ >= end || take_value(end) == Taken::nothing) {
        stop_values();
    }
}

/// The latest possible end of the entry's values.
std::size_t BinarySalvage::end_of_values(const Level& level) const noexcept {
    return level.is_sure ? level.entry_end : level.group_end;
}

/// Whether `place` is the end of the group, or another entry begins there.
bool BinarySalvage::ends_well(const Level& level, std::size_t place) const noexcept {
    return place == level.group_end || (place < level.group_end && is_likely_head(place, level.group_end));
}

void BinarySalvage::begin_entry() {
    Level& level = levels_.back();
    Head head;
    if (!read_head(position_, level.group_end, head)) {
        search_entry(position_, "an entry");
        return;
    }
    take_head(level, head);
    if (!level.is_sure && !has_good_name(head)) {
        const Head shorter = head_with_lost_nul(head, level.group_end);
        if (shorter.name_size == head.name_size) {
            search_entry(position_, "an entry");
            return;
        }
        head = shorter;
        take_head(level, head);
        lost_.add(head.begin + head.name_size, 1, "the end of the name '" + name_of(head) + "'");
    }
    const std::string name = mended_name(head);
    level.entry = bk::EntryAccess::make({.name = name}, 0, 0);
    bk::GroupAccess::adopt(*level.group, level.entry);
    position_ = std::min(head.values, level.group_end);
}

/// Goes on at the next place where an entry seems to begin.
void BinarySalvage::search_entry(std::size_t from, std::string what) {
    const std::size_t end = levels_.back().group_end;
    std::size_t place = from + 1;
    while (place < end && !is_likely_head(place, end)) {
        meter_.reach(place);
        ++place;
    }
    lost_.add(from, place - from, std::move(what));
    position_ = place;
}

/// The entry has no further value.
void BinarySalvage::stop_values() {
    Level& level = levels_.back();
    if (position_ == level.entry_end) {
        finish_entry();
        return;
    }
    const bool is_next = position_ < level.group_end && is_likely_head(position_, level.group_end);
    if (level.is_sure && !is_next) {
        lost_.add(position_, level.entry_end - position_, "values of '" + path() + "'");
        position_ = level.entry_end;
        finish_entry();
        return;
    }
    const std::size_t body = level.head.values - bk::reserved_size;
    const bool is_cut = position_ >= data_.size() || body + level.head.size > level.group_end;
    const bool may_be_cut = announced_end_ > data_.size() && level.group_end == data_.size() && is_cut &&
                            level.head.size != 0 && level.head.size <= announced_end_ - body;
    if (!level.entry->has_value()) {
        const std::string what = "entry '" + path() + "'";
        drop_entry();
        if (may_be_cut) {
            lost_.add(level.head.begin, data_.size() - level.head.begin, what);
            position_ = data_.size();
        } else {
            search_entry(level.head.begin, what);
        }
        return;
    }
    if (may_be_cut) {
        if (position_ < data_.size()) {
            lost_.add(position_, data_.size() - position_, "values of '" + path() + "'");
            position_ = data_.size();
        }
    } else if (ends_well(level, position_)) {
        lost_.add(body - size_width, size_width, "the size of '" + path() + "'");
    } else {
        const std::string what = "values of '" + path() + "'";
        finish_entry();
        search_entry(position_, what);
        return;
    }
    finish_entry();
}

/// Drops an entry that has lost all its values, because without values it would mean something else.
void BinarySalvage::finish_entry() {
    Level& level = levels_.back();
    if (!level.entry->has_value() && level.head.size > bk::reserved_size) {
        drop_entry();
    }
    level.entry = nullptr;
}

void BinarySalvage::drop_entry() {
    Level& level = levels_.back();
    level.group->remove_entry(level.group->get_entries().get_count() - 1);
    level.entry = nullptr;
}

BinarySalvage::Taken BinarySalvage::take_value(std::size_t end) {
    const char tag = data_[position_];
    if (tag == static_cast<char>(ParserValue::TYPE_GROUP)) {
        return take_group(end);
    }
    if (!is_tag(tag) || !value_fits(tag, end)) {
        return Taken::nothing;
    }
    add_value(tag, end);
    return Taken::value;
}

BinarySalvage::Taken BinarySalvage::take_group(std::size_t end) {
    if (end - position_ < 1 + size_width) {
        return take_cut_group(end);
    }
    const std::size_t size_at = position_ + 1;
    if (levels_.size() > nesting_depth_) {
        const std::uint64_t size = number_at(size_at);
        const std::size_t begin = size_at + size_width;
        const std::size_t behind = size <= end - begin ? begin + static_cast<std::size_t>(size) : end;
        lost_.add(position_, behind - position_, "groups nested too deeply in '" + path() + "'");
        position_ = behind;
        return Taken::value;
    }
    Level inner;
    inner.group_end = group_end(size_at, end, false);
    inner.group = add_group(*levels_.back().entry);
    position_ = size_at + size_width;
    levels_.push_back(inner);
    return Taken::group;
}

/// Takes a group of which only the tag is left at the end of the file. The group is empty, as in a load.
BinarySalvage::Taken BinarySalvage::take_cut_group(std::size_t end) {
    if (end != data_.size() || announced_end_ <= data_.size() || levels_.size() > nesting_depth_) {
        return Taken::nothing;
    }
    add_group(*levels_.back().entry);
    lost_.add(position_, end - position_, "what is in the group '" + path() + "'");
    position_ = end;
    return Taken::value;
}

/// Whether a complete value of this type, other than a group, is before `end`.
bool BinarySalvage::value_fits(char tag, std::size_t end) const noexcept {
    const std::string_view rest = data_.substr(position_ + 1, end - position_ - 1);
    switch (static_cast<ParserValue::Type>(tag)) {
    case ParserValue::TYPE_STRING:
        return rest.find('\0') != std::string_view::npos;
    case ParserValue::TYPE_BINARY_DATA:
        // A load uses only the low half of the size.
        return rest.size() >= size_width &&
               static_cast<std::uint32_t>(number_at(position_ + 1)) <= rest.size() - size_width;
    default:
        return bk::stored_size(tag) <= rest.size() + 1;
    }
}

void BinarySalvage::add_value(char tag, std::size_t end) {
    bk::BinaryDecoder decoder(data_.substr(0, end), position_, nesting_depth_);
    const std::unique_ptr<ParserValue> value(decoder.read_value());
    position_ = static_cast<std::size_t>(decoder.position());
    ParserEntry& entry = *levels_.back().entry;
    switch (static_cast<ParserValue::Type>(tag)) {
    case ParserValue::TYPE_BOOL:
        entry.add_bool(value->get_as_bool());
        break;
    case ParserValue::TYPE_CHAR:
        entry.add_char(value->get_as_char());
        break;
    case ParserValue::TYPE_INT:
        entry.add_int(value->get_as_int());
        break;
    case ParserValue::TYPE_DOUBLE:
        entry.add_double(value->get_as_double());
        break;
    case ParserValue::TYPE_STRING:
        entry.add_string(value->get_as_string());
        break;
    default: {
        unsigned int size = 0;
        void* const bytes = value->get_as_binary_data(size);
        entry.add_binary_data(bytes, size);
        break;
    }
    }
}

/// The names of the entries that are open, the outermost first.
std::string BinarySalvage::path() const {
    std::string path;
    for (std::size_t i = levels_.size(); i-- != 0;) {
        const std::string_view name = data_.substr(levels_[i].head.begin, levels_[i].head.name_size);
        if (path.size() + name.size() > most_path_bytes) {
            return ".../" + path;
        }
        path.insert(0, path.empty() ? "" : "/").insert(0, name);
    }
    return path;
}

} // namespace bk_parser
