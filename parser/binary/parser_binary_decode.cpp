#include "parser/binary/parser_binary_impl.h"

#include "core/reports/core_guard_impl.h"
#include "parser/binary/parser_binary_cut_impl.h"
#include "parser/binary/parser_binary_scalar_impl.h"
#include "parser/model/drop/parser_teardown_impl.h"
#include "parser/model/parser_entry_impl.h"
#include "parser/model/parser_group_impl.h"
#include "parser/model/parser_value_impl.h"

#include <algorithm>
#include <memory>
#include <utility>

namespace bk {

namespace {

void report_large_entry(std::string_view name, core_uint64 size, unsigned int buffer_size) {
    report_composed(CoreLogHandler::level_warning, [&](CoreLogStream& stream) {
        stream += "ParserEntry.set_binary: ParserEntry '";
        stream += CoreString(name);
        stream += "', chunk size (";
        stream += size;
        stream += ") is larger than the given buffer (";
        stream += buffer_size;
        stream += ")\n";
    });
}

/// The values of an entry that are all scalars and strings, and that the buffer holds whole.
struct FlatValues {
    const char* begin;
    const char* end;
    unsigned int count;
    std::size_t text_size;
};

/// Skips scalars and strings from `found.begin` on, up to the first that would begin at `sure_end` or later: a scalar that begins
/// before is whole in the buffer. Stores the sizes of the strings. Returns false at any other value and at a string without a
/// NUL.
bool find_flat_values(FlatValues& found, const char* sure_end, const char* buffer_end,
                      std::vector<unsigned int>& string_sizes) {
    const char* place = found.begin;
    unsigned int count = 0;
    std::size_t text_size = 0;
    string_sizes.clear();
    while (place < sure_end) {
        const char tag = *place;
        std::size_t size = stored_size(tag);
        if (size == 0) {
            const std::string_view rest(place + 1, static_cast<std::size_t>(buffer_end - place) - 1);
            const std::size_t length =
                tag == ParserValue::TYPE_STRING ? rest.find('\0') : std::string_view::npos;
            if (StoredValue::is_kept_apart(ParserValue::TYPE_STRING, length)) { // or there is no NUL
                return false;
            }
            string_sizes.push_back(static_cast<unsigned int>(length));
            text_size += StoredValue::string_need(length);
            place += length + 2; // with its tag and the NUL
            ++count;
            continue;
        }
        do {
            place += size;
            ++count;
        } while (place < sure_end && *place == tag);
    }
    found.end = place;
    found.count = count;
    found.text_size = text_size;
    return true;
}

void make_flat_values(ParserValueList& values, const FlatValues& found,
                      const unsigned int* string_size) noexcept {
    StoredValue* value = values.room();
    char* text = values.text_room();
    for (const char* place = found.begin; place != found.end;) {
        const char tag = *place;
        const auto type = static_cast<ParserValue::Type>(tag);
        const std::size_t size = stored_size(tag);
        if (size == 0) {
            StoredValue::make_string(value++, {place + 1, *string_size}, text);
            place += std::size_t{*string_size++} + 2;
            continue;
        }
        do {
            const auto* const bytes = reinterpret_cast<const unsigned char*>(place + 1);
            StoredValue::make_scalar(value++, type, stored_scalar(type, load_le64(bytes)));
            place += size;
        } while (place != found.end && *place == tag);
    }
    values.set_count(found.count);
    values.mark_self_contained();
}

/// Whether a value of that type and size owns memory outside of its list, beside a group.
bool owns_memory(ParserValue::Type type, std::size_t size) noexcept {
    return type == ParserValue::TYPE_BINARY_DATA ||
           (type == ParserValue::TYPE_STRING && StoredValue::is_kept_apart(type, size));
}

} // namespace

BinaryDecoder::~BinaryDecoder() {
    discard_values(0);
    for (ParserEntry* entry : entries_) {
        delete entry;
    }
}

void BinaryDecoder::discard_values(std::size_t first) noexcept {
    for (std::size_t i = first; i < pending_.size(); ++i) {
        if (pending_[i].type == ParserValue::TYPE_GROUP) {
            has_discarded_ = has_discarded_ || pending_[i].group != nullptr;
            destroy_group(pending_[i].group);
        }
    }
    pending_.erase(pending_.begin() + static_cast<std::ptrdiff_t>(first), pending_.end());
}

inline void BinaryDecoder::close_level() {
    const Level& level = levels_.back();
    if (level.group != nullptr) { // else the values are the caller's
        if (level.is_in_entry) {
            discard_values(level.first_value);
        }
        const unsigned int first = level.first_entry;
        ParserEntry* const* const entries = entries_.data() + first;
        const auto count = static_cast<unsigned int>(entries_.size() - first);
        if (pages_ != nullptr && levels_.size() != 1) {
            GroupAccess::fill(*level.group, entries, count, *pages_);
        } else {
            GroupAccess::append(*level.group, entries, count);
        }
        entries_.resize(first);
    }
    levels_.pop_back();
}

/// Logs what is wrong with a name, unless the decoder is strict.
inline std::string_view BinaryDecoder::take_name() {
    std::string_view name;
    if (!cut_string(cursor_, name) && host_ == nullptr) {
        report_open_string();
    }
    return name;
}

/// Compares the size with the whole buffer, not with the rest of it. So an entry may claim more than there is. It then fails where
/// the data end.
inline bool BinaryDecoder::open_entry(Level& level, std::string_view name) {
    const std::uint64_t size = cursor_.take<std::uint64_t>();
    if (host_ != nullptr && !may_hold_entry(level, size)) {
        return false;
    }
    if (!level.is_cut && size > data_.size()) {
        report_large_entry(name, size, static_cast<unsigned int>(data_.size()));
        return false;
    }
    cursor_.skip(reserved_size);
    level.entry_end =
        level.is_cut ? data_.size() : cursor_.position() + (size < reserved_size ? 0 : size - reserved_size);
    level.first_value = static_cast<unsigned int>(pending_.size());
    level.text_size = 0;
    level.is_in_entry = true;
    return true;
}

/// False when the group does not fit what is left of the buffer.
inline bool BinaryDecoder::open_group(ParserGroup& group) {
    std::uint64_t size = cursor_.take<std::uint64_t>();
    const core_uint64 start = cursor_.position();
    if (start > data_.size() || size > data_.size() - start) {
        if (!take_rest_of_cut_group(size)) {
            return false;
        }
        size = cursor_.rest().size();
    }
    Level& level = levels_.emplace_back();
    level.group = &group;
    level.group_end = start + size;
    level.first_entry = static_cast<unsigned int>(entries_.size());
    return true;
}

ParserGroup& BinaryDecoder::make_group() {
    pending_.emplace_back(static_cast<ParserGroup*>(nullptr));
    pending_.back().group = GroupAccess::make(pages_).release();
    return *pending_.back().group;
}

/// Whether the entry is no more than the group at this position, by their sizes.
inline bool BinaryDecoder::holds_only_group(const Level& level) const noexcept {
    const std::uint64_t left = level.entry_end - cursor_.position();
    return level.group != nullptr && !level.is_cut && pending_.size() == level.first_value &&
           level.entry_end <= data_.size() && left >= sizeof(left) &&
           ByteCursor(cursor_).take<std::uint64_t>() == left - sizeof(left);
}

/// Makes such an entry before its group is read, so that both are in memory in the order of the document.
inline ParserGroup& BinaryDecoder::make_with_group(Level& level) {
    std::unique_ptr<ParserEntry> entry(EntryAccess::make({.name = entry_name(level)}, 1, 0, pages_));
    ParserGroup* const group = GroupAccess::make(pages_).release();
    ParserValueList& values = EntryAccess::values(*entry);
    StoredValue::make_group(values.room(), group);
    values.set_count(1);
    entries_.push_back(entry.get());
    static_cast<void>(entry.release());
    level.is_made = true;
    return *group;
}

/// For an entry that was made with its group, which ended too early: what follows in the entry are further values.
void BinaryDecoder::take_apart(Level& level) {
    pending_.emplace_back(static_cast<ParserGroup*>(nullptr));
    ParserValueList& values = EntryAccess::values(*entries_.back());
    pending_.back().group = values.room()->group();
    values.set_count(0);
    has_discarded_ = true;
    level.is_made = false;
    delete entries_.back();
    entries_.pop_back();
}

/// Reads an entry whose values are all scalars and strings and are whole in the buffer. For every other entry returns false and
/// reads nothing.
inline bool BinaryDecoder::read_flat_entry(Level& level) {
    if (!takes_whole_entries || level.is_cut || (pace_ != nullptr && !is_paced_as_one(level)) ||
        cursor_.position() > data_.size()) { // after an entry that is cut in its head
        return false;
    }
    const char* const data = data_.data();
    FlatValues found{data + cursor_.position(), nullptr, 0, 0};
    if (!find_flat_values(found, data + sure_end(level), data + data_.size(), string_sizes_)) {
        return false;
    }
    const auto end = static_cast<core_uint64>(found.end - data);
    if (end < level.entry_end ||
        (host_ != nullptr && end != level.entry_end)) { // more of it, or less than it claims
        return false;
    }
    std::unique_ptr<ParserEntry> entry(
        EntryAccess::make({.name = entry_name(level)}, found.count, found.text_size, pages_));
    if (found.count != 0) {
        make_flat_values(EntryAccess::values(*entry), found, string_sizes_.data());
    }
    cursor_.move_to(end);
    keep_entry(level, std::move(entry));
    return true;
}

/// A scalar of any type that begins before this position and in the entry is whole in the buffer.
core_uint64 BinaryDecoder::sure_end(const Level& level) const noexcept {
    const core_uint64 count = data_.size();
    return std::min(level.entry_end, count < largest_stored_size ? 0 : count - largest_stored_size + 1);
}

std::string_view BinaryDecoder::entry_name(const Level& level) const noexcept {
    return {data_.data() + level.name_at, level.name_size};
}

void BinaryDecoder::keep_entry(Level& level, std::unique_ptr<ParserEntry> entry) {
    entries_.push_back(entry.get());
    static_cast<void>(entry.release());
    level.is_in_entry = false;
}

/// Begins the next entry; those of scalars and strings are read at once.
inline BinaryDecoder::Step BinaryDecoder::begin_entry(Level& level) {
    do {
        const core_uint64 start = cursor_.position();
        if (pace_ != nullptr) {
            pace_->reach(start);
        }
        if (start >= level.group_end) {
            return host_ == nullptr || ends_at(level.group_end) ? Step::done : Step::failed;
        }
        const std::string_view name = take_name();
        if (name.empty()) {
            return fail_at_name(start);
        }
        level.name_at = static_cast<unsigned int>(name.data() - data_.data());
        level.name_size = static_cast<unsigned int>(name.size());
        if (!open_entry(level, name)) {
            return Step::failed;
        }
    } while (read_flat_entry(level));
    return Step::more;
}

inline BinaryDecoder::Step BinaryDecoder::finish_entry(Level& level) {
    if (std::exchange(level.is_made, false)) {
        level.is_in_entry = false;
        return Step::more;
    }
    if (level.group == nullptr) {
        return Step::done;
    }
    const auto count = static_cast<unsigned int>(pending_.size() - level.first_value);
    std::unique_ptr<ParserEntry> entry(
        EntryAccess::make({.name = entry_name(level)}, count, level.text_size, pages_));
    fill_values(EntryAccess::values(*entry), level.first_value);
    keep_entry(level, std::move(entry));
    return Step::more;
}

inline BinaryDecoder::Step BinaryDecoder::advance(Level& level) {
    if (!level.is_in_entry) {
        const Step step = begin_entry(level);
        if (step != Step::more) {
            return step;
        }
    } else if (level.is_made && cursor_.position() < level.entry_end) {
        take_apart(level);
    }
    while (true) {
        if (pace_ != nullptr) {
            pace_->reach(cursor_.position());
        }
        if (cursor_.position() >= level.entry_end) {
            return host_ == nullptr || ends_well(level) ? finish_entry(level) : Step::failed;
        }
        ParserValue::Type type{};
        const core_uint64 start = cursor_.position();
        if (!take_tag(type)) {
            damage(BinaryDamage::Kind::unknown_value, start);
            return Step::failed;
        }
        if (type != ParserValue::TYPE_GROUP) {
            take_value(type);
            if (is_stopped_ || is_past_end()) {
                return Step::failed;
            }
            level.text_size += text_need(pending_.back());
            continue;
        }
        if (levels_.size() > nesting_depth_) {
            return stop_at_depth();
        }
        // `level` may move; a group that cannot be opened stays empty
        open_group(holds_only_group(level) ? make_with_group(level) : make_group());
        return Step::more;
    }
}

bool BinaryDecoder::run() {
    Step step = Step::more;
    while (!levels_.empty()) {
        step = advance(levels_.back());
        if (step != Step::more) {
            close_level();
        }
    }
    return step == Step::done && !is_stopped_;
}

bool BinaryDecoder::read_group(ParserGroup& group) {
    const core_uint64 announced = ByteCursor(cursor_).take<std::uint64_t>();
    UnfinishedPages pages(std::min<core_uint64>(announced, cursor_.rest().size()));
    pages_ = pages.get();
    bool is_whole = false;
    try {
        is_whole = open_group(group) && run();
    } catch (...) {
        keep_whole_entries();
        throw;
    }
    if (!has_discarded_) {
        pages.finish();
    }
    return is_whole;
}

/// Called when memory ran out or the host threw: keeps the whole entries of the outermost group.
void BinaryDecoder::keep_whole_entries() noexcept {
    discard_values(0);
    if (levels_.empty()) {
        return;
    }
    std::size_t whole_count = levels_.size() > 1 ? levels_[1].first_entry : entries_.size();
    whole_count -= levels_[0].is_made ? 1 : 0;
    while (entries_.size() > whole_count) {
        delete entries_.back();
        entries_.pop_back();
    }
    levels_.erase(levels_.begin() + 1, levels_.end());
    levels_[0].is_in_entry = false;
    levels_[0].is_made = false;
    try {
        close_level();
    } catch (const std::exception&) {
        return; // there is no memory to list them either
    }
}

bool BinaryDecoder::read_entry(ParserEntry& entry) {
    Level level{};
    if (!open_entry(level, entry.get_name().get_view())) {
        return false;
    }
    levels_.push_back(level);
    const bool is_whole = run();
    append_values(EntryAccess::values(entry));
    return is_whole;
}

ParserValue* BinaryDecoder::read_value() {
    ParserValue::Type type{};
    if (!take_tag(type)) {
        return nullptr;
    }
    if (type == ParserValue::TYPE_GROUP) {
        auto value = std::make_unique<ParserValue>(static_cast<ParserGroup*>(nullptr));
        read_group(*StoredValue::of(*value).group());
        return value.release();
    }
    take_value(type);
    PendingValue& pending = pending_.back();
    if (pending.type == ParserValue::TYPE_STRING) {
        return new ParserValue(CoreString(std::string_view(pending.text, pending.size)));
    }
    char* no_text = nullptr;
    auto value = std::make_unique<ParserValue>(false); // a bool owns nothing, so make_value may write over it
    make_value(&StoredValue::of(*value), pending, no_text);
    return value.release();
}

bool BinaryDecoder::take_tag(ParserValue::Type& type) noexcept {
    const bool is_there = !cursor_.at_end();
    const std::uint64_t tag = cursor_.take<std::uint8_t>();
    type = static_cast<ParserValue::Type>(tag);
    return is_there && tag <= ParserValue::TYPE_BINARY_DATA;
}

/// A value of any type but a group.
void BinaryDecoder::take_value(ParserValue::Type type) {
    if (type == ParserValue::TYPE_STRING) {
        pending_.emplace_back(type, take_text());
    } else if (type == ParserValue::TYPE_BINARY_DATA) {
        pending_.emplace_back(type, take_bytes());
    } else {
        const std::size_t size = stored_size(static_cast<char>(type)) - 1;
        pending_.emplace_back(type, stored_scalar(type, cursor_.take(size)));
    }
}

void BinaryDecoder::fill_values(ParserValueList& values, std::size_t first) {
    const auto count = static_cast<unsigned int>(pending_.size() - first);
    if (count == 0) {
        return;
    }
    bool is_self_contained = true;
    char* text = values.text_room();
    StoredValue* const places = values.room();
    PendingValue* const pending = pending_.data() + first;
    for (unsigned int i = 0; i < count; ++i) {
        if (owns_memory(pending[i].type, pending[i].size)) {
            is_self_contained = false;
            values.list_entry();
        }
        is_self_contained = is_self_contained && pending[i].type != ParserValue::TYPE_GROUP;
        make_value(places + i, pending[i], text);
        values.set_count(i + 1);
    }
    if (is_self_contained) {
        values.mark_self_contained();
    }
    pending_.erase(pending_.begin() + static_cast<std::ptrdiff_t>(first), pending_.end());
}

void BinaryDecoder::append_values(ParserValueList& values) {
    std::size_t text_size = 0;
    for (const PendingValue& pending : pending_) {
        text_size += text_need(pending);
    }
    ParserValueList made;
    if (!pending_.empty()) {
        made.make_room(static_cast<unsigned int>(pending_.size()), text_size);
    }
    fill_values(made, 0);
    if (values.get_count() == 0) {
        values.swap(made);
        return;
    }
    for (unsigned int i = 0; i < made.get_count(); ++i) {
        values.append(made.change(i));
    }
}

std::size_t BinaryDecoder::text_need(const PendingValue& pending) noexcept {
    return pending.type == ParserValue::TYPE_STRING ? StoredValue::string_need(pending.size) : 0;
}

StoredValue* BinaryDecoder::make_value(void* place, PendingValue& pending, char*& text) {
    if (pending.type >= ParserValue::TYPE_BOOL && pending.type <= ParserValue::TYPE_DOUBLE) {
        return StoredValue::make_scalar(place, pending.type, pending.bits);
    }
    return make_other(place, pending, text);
}

StoredValue* BinaryDecoder::make_other(void* place, PendingValue& pending, char*& text) {
    if (pending.type == ParserValue::TYPE_GROUP) {
        return StoredValue::make_group(place, std::exchange(pending.group, nullptr));
    }
    if (pending.type == ParserValue::TYPE_STRING) {
        return StoredValue::make_string(place, {pending.text, pending.size}, text);
    }
    unsigned char* const bytes = pending.size == 0 ? nullptr : copy_bytes(pending.text, pending.size);
    return StoredValue::make_binary_data(place, bytes, pending.size);
}

} // namespace bk

bool ParserEntry::set_binary(const CoreVector<char>& data, core_uint64& position) {
    bk::BinaryDecoder decoder(data, position);
    const bool is_whole =
        bk::guarded("ParserEntry.set_binary", false, [&] { return decoder.read_entry(*this); });
    position = decoder.position();
    return is_whole;
}

bool ParserGroup::set_binary(const CoreVector<char>& data, core_uint64& position) {
    return set_binary(data, position, ParserLimits());
}

bool ParserGroup::set_binary(const CoreVector<char>& data, core_uint64& position,
                             const ParserLimits& limits) {
    bk::BinaryDecoder decoder(data, position, limits.nesting_depth);
    const bool is_whole =
        bk::guarded("ParserGroup.set_binary", false, [&] { return decoder.read_group(*this); });
    position = decoder.position();
    return is_whole;
}
