#include "parser/binary/parser_binary_impl.h"

#include "core/reports/core_guard_impl.h"
#include "core/text/core_copy_impl.h"
#include "core/text/core_room_impl.h"
#include "parser/binary/parser_binary_scalar_impl.h"
#include "parser/model/parser_entry_impl.h"
#include "parser/model/parser_value_impl.h"

#include <algorithm>

namespace bk {

namespace {

constexpr std::size_t entry_head_size = sizeof(std::uint64_t) + reserved_size;

/// Stores scalars and strings from the value at `next` on. Stops at the first value that is neither, that may not fit before
/// `limit`, or that is not stored side by side with the others, and sets `next` to it. Returns the end of what is stored.
inline char* put_values(char* end, const char* limit, const ParserValueList& values, unsigned int& next) {
    constexpr std::size_t tag_size = 1;
    const StoredValue* const first = values.side_by_side();
    if (first == nullptr || !takes_whole_entries) {
        return end;
    }
    const StoredValue* const last = first + values.get_count();
    const StoredValue* value = first + next;
    for (; value != last; ++value) {
        const auto room = static_cast<std::size_t>(limit - end);
        if (room < largest_stored_size) {
            break;
        }
        if (value->has_scalar_inside()) {
            end = put_read_scalar(end, *value);
        } else if (value->type() == ParserValue::TYPE_STRING) {
            const CoreString& text = value->held_string();
            if (room < StringAccess::put_room(text) + tag_size) {
                break;
            }
            *end = ParserValue::TYPE_STRING;
            end = StringAccess::put(end + tag_size, text);
        } else {
            char* const behind = put_scalar(end, *value);
            if (behind == end) {
                break;
            }
            end = behind;
        }
    }
    next = static_cast<unsigned int>(value - first);
    return end;
}

} // namespace

void BinaryEncoder::take_storage(unsigned int used) noexcept {
    end_ = out_.get_data() + used;
    limit_ = out_.get_data() + out_.get_capacity();
}

bool BinaryEncoder::grow(std::size_t size) {
    const core_uint64 needed = core_uint64{used()} + size;
    if (!fits_ || size > max_binary_size || needed > max_binary_size) {
        fits_ = false;
        limit_ = end_; // refuse everything from here on, however small
        return false;
    }
    out_.extend(used() - out_.get_count()); // growing keeps only bytes that are counted
    const core_uint64 grown = next_room(out_.get_capacity());
    const core_uint64 wanted = std::min(std::max(needed, grown), max_binary_size);
    out_.make_room(static_cast<unsigned int>(wanted - out_.get_count()));
    take_storage(out_.get_count());
    return true;
}

void BinaryEncoder::write_bytes(const void* bytes, std::size_t size) {
    if (has_room(size)) {
        copy_text(end_, static_cast<const char*>(bytes), size);
        end_ += size;
    }
}

void BinaryEncoder::write_size(std::uint64_t size) {
    if (has_room(sizeof(size))) {
        store_le64(reinterpret_cast<unsigned char*>(end_), size);
        end_ += sizeof(size);
    }
}

void BinaryEncoder::write_string(const CoreString& text) {
    const std::size_t room = StringAccess::put_room(text);
    if (is_last_room(room)) {
        write_bytes(text.get_data(), std::size_t{text.get_length()} + 1);
    } else if (has_room(room)) {
        end_ = StringAccess::put(end_, text);
    }
}

void BinaryEncoder::write_binary_data(const void* data, unsigned int size) {
    write_size(size);
    write_bytes(data, size);
}

core_uint64 BinaryEncoder::finish(const char* operation) {
    if (fits_) {
        out_.extend(used() - out_.get_count());
    } else {
        out_.truncate(begin_);
        report_warning(operation, ": data too large\n");
    }
    return out_.get_count() - begin_;
}

unsigned int BinaryEncoder::leave_size() {
    const unsigned int place = used();
    if (has_room(sizeof(std::uint64_t))) {
        end_ += sizeof(std::uint64_t);
    }
    return place;
}

void BinaryEncoder::fill_size(unsigned int place) noexcept {
    if (fits_) {
        auto* const bytes = reinterpret_cast<unsigned char*>(out_.get_data() + place);
        store_le64(bytes, used() - place - sizeof(std::uint64_t));
    }
}

void BinaryEncoder::write_value(const StoredValue& value, bool with_type) {
    const ParserValue::Type type = value.type();
    char stored[largest_stored_size];
    const char* const end = put_scalar(stored, value);
    if (end != stored) {
        const char* const begin = with_type ? stored : stored + 1;
        write_bytes(begin, static_cast<std::size_t>(end - begin));
        return;
    }
    if (with_type) {
        const char tag = static_cast<char>(type);
        write_bytes(&tag, sizeof(tag));
    }
    if (type == ParserValue::TYPE_STRING) {
        write_string(value.held_string());
    } else if (type == ParserValue::TYPE_BINARY_DATA) {
        const std::string_view data = value.bytes();
        write_binary_data(data.data(), static_cast<unsigned int>(data.size()));
    } else if (type == ParserValue::TYPE_GROUP) {
        if (const ParserGroup* group = value.group()) {
            write_group(*group);
        } else {
            write_size(0);
        }
    }
}

void BinaryEncoder::write_group(const ParserGroup& group) {
    open_group(group);
    run();
}

void BinaryEncoder::write_entry(const ParserEntry& entry) {
    const ParserEntry* const one = &entry;
    levels_.push_back({&one, 1, 0, 0, 0, 0, false, false});
    run();
}

void BinaryEncoder::open_group(const ParserGroup& group) {
    const CoreVector<ParserEntry*>& entries = group.get_entries();
    levels_.push_back({entries.get_data(), entries.get_count(), 0, 0, leave_size(), 0, true, false});
}

void BinaryEncoder::run() {
    while (!levels_.empty()) {
        Level& level = levels_.back();
        if (!level.is_in_entry) {
            put_entries(level);
        }
        if (level.is_in_entry) {
            if (write_values(level)) {
                fill_size(level.entry_size_at);
                level.is_in_entry = false;
            }
        } else if (fits_ && level.next_entry < level.entry_count) {
            begin_entry(level, *level.entries[level.next_entry++]);
        } else {
            if (level.has_size) {
                fill_size(level.size_at);
            }
            levels_.pop_back();
        }
    }
}

/// Stores an entry up to its first value that is no scalar or string. Returns false, and stores nothing, when its head may not fit.
bool BinaryEncoder::put_entry(Level& level, const ParserEntry& entry) {
    const CoreString& name = entry.get_name();
    const ParserValueList& values = EntryAccess::values(entry);
    if (!takes_whole_entries || room() < StringAccess::put_room(name) + entry_head_size) {
        return false;
    }
    char* const head = StringAccess::put(end_, name);
    char* const begin = head + sizeof(std::uint64_t);
    *begin = 0;
    unsigned int next_value = 0;
    end_ = put_values(begin + reserved_size, limit_, values, next_value);
    if (next_value == values.get_count()) {
        store_le64(reinterpret_cast<unsigned char*>(head), static_cast<std::uint64_t>(end_ - begin));
    } else {
        level.next_value = next_value;
        level.entry_size_at = static_cast<unsigned int>(head - out_.get_data());
        level.is_in_entry = true;
    }
    return true;
}

/// Stores entries of scalars and strings. Stops in the first entry that has other values or whose values may not fit, and before
/// an entry whose head may not fit.
void BinaryEncoder::put_entries(Level& level) {
    while (!level.is_in_entry && level.next_entry < level.entry_count) {
        const ParserEntry* const entry = level.entries[level.next_entry];
        if (entry != nullptr && !put_entry(level, *entry)) {
            break;
        }
        ++level.next_entry;
    }
}

/// Begins an entry whose head may need more room.
void BinaryEncoder::begin_entry(Level& level, const ParserEntry& entry) {
    write_string(entry.get_name());
    level.entry_size_at = leave_size();
    write_bytes("", reserved_size);
    level.next_value = 0;
    level.is_in_entry = true;
}

/// Goes on in an entry. Returns false at a group, which has to be written before the values after it.
bool BinaryEncoder::write_values(Level& level) {
    const ParserValueList& values = EntryAccess::values(*level.entries[level.next_entry - 1]);
    while (fits_ && level.next_value != values.get_count()) {
        const StoredValue& value = values[level.next_value++];
        if (const ParserGroup* group = value.group()) {
            static constexpr char tag = ParserValue::TYPE_GROUP;
            write_bytes(&tag, sizeof(tag));
            open_group(*group); // `level` may have moved
            return false;
        }
        write_value(value, true);
        end_ = put_values(end_, limit_, values, level.next_value);
    }
    return true;
}

} // namespace bk

CoreVector<char> ParserEntry::get_binary() const {
    CoreVector<char> out;
    bk::encode(out, "ParserEntry.get_binary",
               [&](bk::BinaryEncoder& encoder) { encoder.write_entry(*this); });
    return out;
}

CoreVector<char> ParserGroup::get_binary(const bool& with_name) const {
    CoreVector<char> out;
    bk::encode(out, "ParserGroup.get_binary", [&](bk::BinaryEncoder& encoder) {
        if (with_name) {
            encoder.write_string(name_);
        }
        encoder.write_group(*this);
    });
    return out;
}
