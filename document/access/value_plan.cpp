#include "document/access/value_plan_impl.h"

#include "parser/model/parser_value_impl.h"

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>

namespace bk_parser {

namespace {

using GivenKind = GivenValue::Kind;
constexpr ParserValue::Type no_type = static_cast<ParserValue::Type>(0xFFu);

PlannedValue plan_integer(ParserValue::Type type, int number) {
    return {type, number, 0.0, {}};
}
PlannedValue plan_double(double number) {
    return {ParserValue::TYPE_DOUBLE, 0, number, {}};
}
PlannedValue plan_text(ParserValue::Type type, std::string_view text) {
    return {type, 0, 0.0, text};
}

bool has_double(long long number) noexcept {
    const auto real = static_cast<double>(number);
    return real >= -0x1p63 && real < 0x1p63 && static_cast<long long>(real) == number;
}

std::optional<PlannedValue> plan_whole(long long number, ParserValue::Type existing) {
    if (existing == ParserValue::TYPE_CHAR && number >= -128 && number <= 127) {
        return plan_integer(existing, static_cast<int>(number));
    }
    const bool is_int =
        number >= std::numeric_limits<int>::min() && number <= std::numeric_limits<int>::max();
    if (is_int && existing != ParserValue::TYPE_DOUBLE) {
        return plan_integer(ParserValue::TYPE_INT, static_cast<int>(number));
    }
    return has_double(number) ? std::optional(plan_double(static_cast<double>(number))) : std::nullopt;
}

/// An int or a char takes a double that is an int; a negative zero is none.
std::optional<PlannedValue> plan_real(double number, ParserValue::Type existing) {
    if (!std::isfinite(number)) {
        return std::nullopt;
    }
    const bool is_int_here = existing == ParserValue::TYPE_INT || existing == ParserValue::TYPE_CHAR;
    const bool is_int = std::trunc(number) == number && number >= std::numeric_limits<int>::min() &&
                        number <= std::numeric_limits<int>::max() && (number != 0.0 || !std::signbit(number));
    return is_int_here && is_int ? plan_whole(static_cast<long long>(number), existing) : plan_double(number);
}

} // namespace

std::optional<PlannedValue> plan_value(const GivenValue& given, const ParserValue* existing) {
    const ParserValue::Type type = existing == nullptr ? no_type : bk::ValueAccess::type(*existing);
    const bool is_number =
        type == ParserValue::TYPE_CHAR || type == ParserValue::TYPE_INT || type == ParserValue::TYPE_DOUBLE;
    switch (given.kind) {
    case GivenKind::boolean:
        return plan_integer(ParserValue::TYPE_BOOL, static_cast<int>(given.integer));
    case GivenKind::character:
        return plan_whole(given.integer, is_number ? type : ParserValue::TYPE_CHAR);
    case GivenKind::integer:
        return plan_whole(given.integer, type);
    case GivenKind::real:
        return plan_real(given.real, type);
    case GivenKind::text:
        return given.text.size() > CoreString::max_length
                   ? std::nullopt
                   : std::optional(plan_text(ParserValue::TYPE_STRING, given.text));
    case GivenKind::bytes:
        return given.text.size() > std::numeric_limits<std::uint32_t>::max()
                   ? std::nullopt
                   : std::optional(plan_text(ParserValue::TYPE_BINARY_DATA, given.text));
    default:
        return std::nullopt;
    }
}

bool is_equal(const ParserValue& value, const PlannedValue& planned) {
    if (bk::ValueAccess::type(value) != planned.type) {
        return false;
    }
    switch (planned.type) {
    case ParserValue::TYPE_BOOL:
        return value.get_as_bool() == (planned.integer != 0);
    case ParserValue::TYPE_DOUBLE:
        return std::bit_cast<std::uint64_t>(value.get_as_double()) ==
               std::bit_cast<std::uint64_t>(planned.real);
    case ParserValue::TYPE_STRING:
        return bk::ValueAccess::string(value) == planned.text;
    case ParserValue::TYPE_BINARY_DATA:
        return bk::ValueAccess::bytes(value) == planned.text;
    default:
        return value.get_as_int() == planned.integer;
    }
}

} // namespace bk_parser
