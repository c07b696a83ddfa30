#include "document/compare/value_equal_impl.h"

#include "document/sources/byte_hash_impl.h"
#include "parser/model/parser_entry_impl.h"
#include "parser/model/parser_value_impl.h"

#include <bit>
#include <cmath>

namespace bk_parser {

namespace {

bool is_number(ParserValue::Type type) noexcept {
    return type == ParserValue::TYPE_CHAR || type == ParserValue::TYPE_INT ||
           type == ParserValue::TYPE_DOUBLE;
}

std::string_view bytes_of(const bk::StoredValue& value) {
    switch (value.type()) {
    case ParserValue::TYPE_STRING:
        return value.held_string().get_view();
    case ParserValue::TYPE_BINARY_DATA:
        return value.bytes();
    default:
        return {};
    }
}

/// The bits of a scalar; chars and ints are sign-extended.
std::uint64_t bits_of(const ParserEntry& entry, unsigned int i) {
    switch (entry.get_value_type(i)) {
    case ParserValue::TYPE_BOOL:
        return entry.get_bool(i) ? 1 : 0;
    case ParserValue::TYPE_CHAR:
    case ParserValue::TYPE_INT:
        return static_cast<std::uint64_t>(entry.get_int(i));
    case ParserValue::TYPE_DOUBLE: // compares bits, because -0.0 == 0.0
        return std::bit_cast<std::uint64_t>(entry.get_double(i));
    default:
        return 0;
    }
}

} // namespace

bool ValueEquality::are_equal(const ParserEntry& left, unsigned int i, const ParserEntry& right,
                              unsigned int j) const {
    const ParserValue::Type type = left.get_value_type(i);
    const ParserValue::Type other = right.get_value_type(j);
    if (has_tolerance() && is_number(type) && is_number(other)) {
        return std::fabs(left.get_double(i) - right.get_double(j)) <= options_.tolerance;
    }
    return type == other && bits_of(left, i) == bits_of(right, j) &&
           bytes_of(bk::EntryAccess::value(left, i)) == bytes_of(bk::EntryAccess::value(right, j));
}

std::uint64_t hash_of_value(const ParserEntry& entry, unsigned int i) {
    const ParserValue::Type type = entry.get_value_type(i);
    const std::string_view bytes = bytes_of(bk::EntryAccess::value(entry, i));
    const std::uint64_t content = bytes.empty() ? bits_of(entry, i) : ByteHash::of(bytes);
    return mixed(static_cast<std::uint64_t>(type), content);
}

bool have_same_heads(const ParserEntry& left, const ParserEntry& right) noexcept {
    return left.get_type() == right.get_type() && left.get_array_count() == right.get_array_count() &&
           left.get_template() == right.get_template();
}

} // namespace bk_parser
