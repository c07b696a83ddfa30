#include "parser/parser_binary_impl.h"

#include "core/core_copy_impl.h"
#include "core/core_guard_impl.h"
#include "core/core_room_impl.h"
#include "parser/parser_entry_impl.h"
#include "parser/parser_value_impl.h"

#include <algorithm>
#include <bit>

namespace bk {

namespace {

constexpr std::ptrdiff_t largest_scalar = 1 + sizeof(std::uint64_t); // with its tag

/// Stores what a scalar is written as; nothing for any other value. The place behind it.
inline char* put_scalar(char* out, const ParserValue& value) {
    auto* const bytes = reinterpret_cast<unsigned char*>(out);
    switch (ValueAccess::type(value)) {
    case ParserValue::TYPE_BOOL:
        *out = ValueAccess::scalar(value).as_bool ? 1 : 0;
        return out + 1;
    case ParserValue::TYPE_CHAR:
        *out = ValueAccess::scalar(value).as_char;
        return out + 1;
    case ParserValue::TYPE_INT:
        store_le32(bytes, static_cast<std::uint32_t>(ValueAccess::scalar(value).as_int));
        return out + sizeof(std::uint32_t);
    case ParserValue::TYPE_DOUBLE:
        store_le64(bytes, std::bit_cast<std::uint64_t>(ValueAccess::scalar(value).as_double));
        return out + sizeof(std::uint64_t);
    default:
        return out;
    }
}

constexpr unsigned int entries_ahead = 4; // in a large tree each entry has to come from memory first

} // namespace

void BinaryEncoder::take_storage(unsigned int used) noexcept {
    end_ = out_.get_data() + used;
    limit_ = out_.get_data() + out_.get_capacity();
}

bool BinaryEncoder::grow(std::size_t size) {
    const core_uint64 needed = core_uint64{used()} + size;
    if (!fits_ || size > max_binary_size || needed > max_binary_size) {
        fits_ = false;
        limit_ = end_; // nothing more, however small
        return false;
    }
    out_.extend(used() - out_.get_count()); // what is counted is kept
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

void BinaryEncoder::write_value(const ParserValue& value, bool with_type) {
    const ParserValue::Type type = ValueAccess::type(value);
    if (is_last_room(largest_scalar)) {
        char scalar[largest_scalar] = {static_cast<char>(type)};
        const char* const end = put_scalar(with_type ? scalar + 1 : scalar, value);
        write_bytes(scalar, static_cast<std::size_t>(end - scalar));
    } else if (has_room(largest_scalar)) {
        *end_ = static_cast<char>(type);
        end_ = put_scalar(with_type ? end_ + 1 : end_, value);
    }
    if (!fits_) {
        return;
    }
    if (type == ParserValue::TYPE_STRING) {
        write_string(value.get_as_string());
    } else if (type == ParserValue::TYPE_BINARY_DATA) {
        const std::string_view data = ValueAccess::bytes(value);
        write_binary_data(data.data(), static_cast<unsigned int>(data.size()));
    } else if (type == ParserValue::TYPE_GROUP) {
        if (const ParserGroup* group = ValueAccess::group(value)) {
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
    for (unsigned int i = 0; i < std::min(entries.get_count(), entries_ahead); ++i) {
        prefetch_entry(entries[i]);
    }
    levels_.push_back({entries.get_data(), entries.get_count(), 0, 0, leave_size(), 0, true, false});
}

void BinaryEncoder::run() {
    while (!levels_.empty()) {
        Level& level = levels_.back();
        if (level.is_in_entry) {
            if (write_values(level)) {
                fill_size(level.entry_size_at);
                level.is_in_entry = false;
            }
        } else if (fits_ && level.next_entry < level.entry_count) {
            if (level.entry_count - level.next_entry > entries_ahead) {
                prefetch_entry(level.entries[level.next_entry + entries_ahead]);
            }
            if (const ParserEntry* entry = level.entries[level.next_entry++]) {
                begin_entry(level, *entry);
            }
        } else {
            if (level.has_size) {
                fill_size(level.size_at);
            }
            levels_.pop_back();
        }
    }
}

void BinaryEncoder::begin_entry(Level& level, const ParserEntry& entry) {
    constexpr std::size_t reserved = 1; // a byte that is 0
    const std::size_t name_room = StringAccess::put_room(entry.get_name());
    if (is_last_room(name_room + sizeof(std::uint64_t) + reserved)) {
        write_string(entry.get_name());
        level.entry_size_at = leave_size();
        write_bytes("", reserved);
    } else if (has_room(name_room + sizeof(std::uint64_t) + reserved)) {
        write_string(entry.get_name());
        level.entry_size_at = leave_size();
        *end_++ = 0;
    }
    level.next_value = 0;
    level.is_in_entry = true;
}

/// False when a group stands in between, which is to be written first.
bool BinaryEncoder::write_values(Level& level) {
    const ParserValueList& values = EntryAccess::values(*level.entries[level.next_entry - 1]);
    while (fits_) {
        write_scalars(values, level.next_value);
        if (level.next_value == values.get_count()) {
            break;
        }
        const ParserValue& value = values[level.next_value++];
        if (const ParserGroup* group = ValueAccess::group(value)) {
            static constexpr char tag = ParserValue::TYPE_GROUP;
            write_bytes(&tag, sizeof(tag));
            open_group(*group); // `level` may have moved
            return false;
        }
        write_value(value, true);
    }
    return true;
}

/// Up to the first value that is no scalar, or for which there may be no room.
void BinaryEncoder::write_scalars(const ParserValueList& values, unsigned int& next) {
    const unsigned int count = values.get_count();
    char* end = end_; // a store through a pointer to char could change the member
    while (next < count && limit_ - end >= largest_scalar) {
        const ParserValue& value = values[next];
        char* const behind = put_scalar(end + 1, value);
        if (behind == end + 1) {
            break;
        }
        *end = static_cast<char>(ValueAccess::type(value));
        end = behind;
        ++next;
    }
    end_ = end;
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
