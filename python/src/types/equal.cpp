#include "types/equal.h"

#include <bit>
#include <cstdint>

namespace bk_python {

namespace {

ParserGroup* group_at(const ParserEntry& entry, unsigned int value) {
    ParserGroup* group = nullptr;
    bk_parser::access::read(entry, value, group);
    return group;
}

unsigned int size_of(const ParserGroup* group) noexcept {
    return group == nullptr ? 0 : group->get_entries().get_count();
}

template <class T>
bool is_same(const ParserEntry& left, const ParserEntry& right, unsigned int value) {
    T one{};
    T other{};
    bk_parser::access::read(left, value, one);
    bk_parser::access::read(right, value, other);
    return std::string_view(reinterpret_cast<const char*>(one.data()), one.size()) ==
           std::string_view(reinterpret_cast<const char*>(other.data()), other.size());
}

/// Compares groups by their number of entries only: the walk compares the entries.
bool is_value_like(const ParserEntry& left, const ParserEntry& right, unsigned int value) {
    const ParserValue::Type type = left.get_value_type(value);
    if (type != right.get_value_type(value)) {
        return false;
    }
    switch (type) {
    case ParserValue::TYPE_GROUP:
        return size_of(group_at(left, value)) == size_of(group_at(right, value));
    case ParserValue::TYPE_BOOL:
        return left.get_bool(value) == right.get_bool(value);
    case ParserValue::TYPE_CHAR:
    case ParserValue::TYPE_INT:
        return left.get_int(value) == right.get_int(value);
    case ParserValue::TYPE_DOUBLE:
        return std::bit_cast<std::uint64_t>(left.get_double(value)) ==
               std::bit_cast<std::uint64_t>(right.get_double(value));
    case ParserValue::TYPE_STRING:
        return is_same<std::string_view>(left, right, value);
    case ParserValue::TYPE_BINARY_DATA:
        return is_same<std::span<const std::byte>>(left, right, value);
    default:
        return left.get_word(value) == right.get_word(value);
    }
}

/// Compares everything of two entries except the content of their groups.
bool is_alike(const ParserEntry& left, const ParserEntry& right) {
    if (left.get_name() != right.get_name() || left.get_type() != right.get_type() ||
        left.get_template() != right.get_template() || left.get_array_count() != right.get_array_count() ||
        left.get_value_count() != right.get_value_count()) {
        return false;
    }
    for (unsigned int i = 0; i < left.get_value_count(); ++i) {
        if (!is_value_like(left, right, i)) {
            return false;
        }
    }
    return true;
}

} // namespace

/// Walks both trees in parallel. While each entry has as many groups, with as many entries, as its counterpart, both walks
/// reach the same places.
bool are_equal(const ParserGroup& left, const ParserGroup& right) {
    if (&left == &right) {
        return true;
    }
    if (size_of(&left) != size_of(&right)) {
        return false;
    }
    bk_parser::Walker one(left);
    bk_parser::Walker other(right);
    while (one.next()) {
        if (!other.next() || !is_alike(one.visit().entry(), other.visit().entry())) {
            return false;
        }
    }
    return !other.next();
}

bool are_equal(const ParserEntry& left, const ParserEntry& right) {
    if (!is_alike(left, right)) {
        return false;
    }
    for (unsigned int i = 0; i < left.get_value_count(); ++i) {
        const ParserGroup* const group = group_at(left, i);
        if (group != nullptr && !are_equal(*group, *group_at(right, i))) {
            return false;
        }
    }
    return true;
}

} // namespace bk_python
