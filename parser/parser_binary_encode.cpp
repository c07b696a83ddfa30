#include "parser/parser_binary_impl.h"

#include "core/core_copy_impl.h"
#include "core/core_diagnostic_impl.h"
#include "parser/parser_entry_impl.h"
#include "parser/parser_value_impl.h"

#include <bit>

namespace bk {

namespace {

/// Stores what a scalar is written as; nothing for any other value. The number of bytes.
std::size_t store_scalar(unsigned char* out, const ParserValue& value) {
    switch (ValueAccess::type(value)) {
    case ParserValue::TYPE_BOOL:
        *out = value.get_as_bool() ? 1 : 0;
        return 1;
    case ParserValue::TYPE_CHAR:
        *out = static_cast<unsigned char>(value.get_as_char());
        return 1;
    case ParserValue::TYPE_INT:
        store_le32(out, static_cast<std::uint32_t>(value.get_as_int()));
        return sizeof(std::uint32_t);
    case ParserValue::TYPE_DOUBLE:
        store_le64(out, std::bit_cast<std::uint64_t>(value.get_as_double()));
        return sizeof(std::uint64_t);
    default:
        return 0;
    }
}

} // namespace

void BinaryEncoder::write_bytes(const void* bytes, core_uint64 size) {
    fits_ = fits_ && size <= max_binary_size - out_.get_count();
    if (fits_) {
        char* const room = out_.extend(static_cast<unsigned int>(size));
        copy_text(room, static_cast<const char*>(bytes), static_cast<std::size_t>(size));
    }
}

void BinaryEncoder::write_size(std::uint64_t size) {
    unsigned char bytes[sizeof(size)];
    store_le64(bytes, size);
    write_bytes(bytes, sizeof(bytes));
}

void BinaryEncoder::write_string(const CoreString& text) {
    write_bytes(text.get_data(), core_uint64{text.get_length()} + 1);
}

void BinaryEncoder::write_binary_data(const void* data, unsigned int size) {
    write_size(size);
    write_bytes(data, size);
}

core_uint64 BinaryEncoder::finish(const char* operation) {
    if (!fits_) {
        out_.truncate(begin_);
        report_warning(operation, ": data too large\n");
    }
    return out_.get_count() - begin_;
}

unsigned int BinaryEncoder::leave_size() {
    const unsigned int place = out_.get_count();
    write_size(0);
    return place;
}

void BinaryEncoder::fill_size(unsigned int place) noexcept {
    if (fits_) {
        auto* const bytes = reinterpret_cast<unsigned char*>(out_.get_data() + place);
        store_le64(bytes, out_.get_count() - place - sizeof(std::uint64_t));
    }
}

void BinaryEncoder::write_value(const ParserValue& value, bool with_type) {
    unsigned char bytes[1 + sizeof(std::uint64_t)]; // the tag and a scalar
    bytes[0] = static_cast<unsigned char>(ValueAccess::type(value));
    const std::size_t scalar_size = store_scalar(bytes + 1, value);
    write_bytes(with_type ? bytes : bytes + 1, scalar_size + (with_type ? 1 : 0));
    switch (ValueAccess::type(value)) {
    case ParserValue::TYPE_GROUP:
        if (const ParserGroup* group = ValueAccess::group(value)) {
            write_group(*group);
        } else {
            write_size(0);
        }
        break;
    case ParserValue::TYPE_STRING:
        write_string(value.get_as_string());
        break;
    case ParserValue::TYPE_BINARY_DATA: {
        const std::string_view data = ValueAccess::bytes(value);
        write_binary_data(data.data(), static_cast<unsigned int>(data.size()));
        break;
    }
    default: // a word is its tag alone
        break;
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
        if (level.is_in_entry) {
            if (write_values(level)) {
                fill_size(level.entry_size_at);
                level.is_in_entry = false;
            }
        } else if (fits_ && level.next_entry < level.entry_count) {
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
    static constexpr char reserved = 0;
    write_string(entry.get_name());
    level.entry_size_at = leave_size();
    write_bytes(&reserved, sizeof(reserved));
    level.next_value = 0;
    level.is_in_entry = true;
}

/// False when a group stands in between, which is to be written first.
bool BinaryEncoder::write_values(Level& level) {
    const ParserEntry& entry = *level.entries[level.next_entry - 1];
    while (fits_ && level.next_value < entry.get_value_count()) {
        const ParserValue& value = EntryAccess::value(entry, level.next_value++);
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

} // namespace bk

CoreVector<char> ParserEntry::get_binary() const {
    CoreVector<char> out;
    bk::BinaryEncoder encoder(out);
    encoder.write_entry(*this);
    encoder.finish("ParserEntry.get_binary");
    return out;
}

CoreVector<char> ParserGroup::get_binary(const bool& with_name) const {
    CoreVector<char> out;
    bk::BinaryEncoder encoder(out);
    if (with_name) {
        encoder.write_string(name_);
    }
    encoder.write_group(*this);
    encoder.finish("ParserGroup.get_binary");
    return out;
}
