#include "document/paths/path_search_impl.h"
#include "document/values.h"
#include "parser/model/parser_entry_impl.h"
#include "parser/model/parser_value_impl.h"

#include <cmath>
#include <limits>

namespace bk_parser::access {

namespace {

/// The value, or null when the entry has none at that position.
const bk::StoredValue* find_in(const ParserEntry& entry, unsigned int value) noexcept {
    return value < entry.get_value_count() ? &bk::EntryAccess::value(entry, value) : nullptr;
}

bool is_of(const bk::StoredValue* value, ParserValue::Type type) noexcept {
    return value != nullptr && value->type() == type;
}

/// A whole number that lies from `least` to just below `above`, both exact as doubles.
bool is_whole(double number, double least, double above) noexcept {
    return number >= least && number < above && std::trunc(number) == number;
}

template <class Wide>
bool read_wide(const ParserEntry& entry, unsigned int index, Wide& out) {
    const bk::StoredValue* const value = find_in(entry, index);
    if (is_of(value, ParserValue::TYPE_DOUBLE)) {
        const double number = value->get_as_double();
        constexpr double above = std::numeric_limits<Wide>::is_signed ? 0x1p63 : 0x1p64;
        if (!is_whole(number, std::numeric_limits<Wide>::is_signed ? -0x1p63 : 0.0, above)) {
            return false;
        }
        out = static_cast<Wide>(number);
        return true;
    }
    if (!is_of(value, ParserValue::TYPE_INT) && !is_of(value, ParserValue::TYPE_CHAR)) {
        return false;
    }
    const int number = value->get_as_int();
    if (number < 0 && !std::numeric_limits<Wide>::is_signed) {
        return false;
    }
    out = static_cast<Wide>(number);
    return true;
}

} // namespace

bool read(const ParserEntry& entry, unsigned int value, bool& out) {
    const bk::StoredValue* const found = find_in(entry, value);
    if (!is_of(found, ParserValue::TYPE_BOOL)) {
        return false;
    }
    out = found->get_as_bool();
    return true;
}

bool read(const ParserEntry& entry, unsigned int value, long long& out) {
    return read_wide(entry, value, out);
}

bool read(const ParserEntry& entry, unsigned int value, unsigned long long& out) {
    return read_wide(entry, value, out);
}

bool read(const ParserEntry& entry, unsigned int value, double& out) {
    const bk::StoredValue* const found = find_in(entry, value);
    if (!is_of(found, ParserValue::TYPE_DOUBLE) && !is_of(found, ParserValue::TYPE_INT) &&
        !is_of(found, ParserValue::TYPE_CHAR)) {
        return false;
    }
    out = found->get_as_double();
    return true;
}

bool read(const ParserEntry& entry, unsigned int value, float& out) {
    double number = 0.0;
    if (!read(entry, value, number) || std::fabs(number) > double{std::numeric_limits<float>::max()}) {
        return false;
    }
    out = static_cast<float>(number);
    return true;
}

bool read(const ParserEntry& entry, unsigned int value, std::string_view& out) {
    const bk::StoredValue* const found = find_in(entry, value);
    if (!is_of(found, ParserValue::TYPE_STRING)) {
        return false;
    }
    out = found->string();
    return true;
}

bool read(const ParserEntry& entry, unsigned int value, std::span<const std::byte>& out) {
    const bk::StoredValue* const found = find_in(entry, value);
    if (!is_of(found, ParserValue::TYPE_BINARY_DATA)) {
        return false;
    }
    const std::string_view bytes = found->bytes();
    out = {reinterpret_cast<const std::byte*>(bytes.data()), bytes.size()};
    return true;
}

bool read(const ParserEntry& entry, unsigned int value, ParserGroup*& out) {
    const bk::StoredValue* const found = find_in(entry, value);
    ParserGroup* const group = found == nullptr ? nullptr : found->group();
    out = group != nullptr ? group : out;
    return group != nullptr;
}

const ParserEntry* find_value(const ParserGroup& group, PathRef path, unsigned int& value) {
    const PathArgument argument(path);
    const ParserEntry* const entry = find_first(group, argument);
    if (entry != nullptr) {
        value = argument.last().named_value();
    }
    return entry;
}

} // namespace bk_parser::access
