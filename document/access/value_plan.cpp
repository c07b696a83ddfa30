#include "document/access/value_plan_impl.h"

#include "core/numbers/core_number_impl.h"
#include "parser/model/parser_value_impl.h"

#include <array>
#include <bit>
#include <charconv>
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

/// Whether an int or a char can hold this double. It cannot hold a negative zero.
std::optional<PlannedValue> plan_real(double number, ParserValue::Type existing) {
    if (!std::isfinite(number)) {
        return std::nullopt;
    }
    const bool is_int_here = existing == ParserValue::TYPE_INT || existing == ParserValue::TYPE_CHAR;
    const bool is_int = std::trunc(number) == number && number >= std::numeric_limits<int>::min() &&
                        number <= std::numeric_limits<int>::max() && (number != 0.0 || !std::signbit(number));
    return is_int_here && is_int ? plan_whole(static_cast<long long>(number), existing) : plan_double(number);
}

/// The float that `get` reads from this number.
bool reads_as(double number, float single) noexcept {
    return std::fabs(number) <= double{std::numeric_limits<float>::max()} &&
           std::bit_cast<std::uint32_t>(static_cast<float>(number)) == std::bit_cast<std::uint32_t>(single);
}

/// The double nearest to the shortest digits of a float, unless that reads back as another float.
double shortest_double(float number) noexcept {
    std::array<char, 64> digits{};
    const std::to_chars_result end = std::to_chars(digits.data(), digits.data() + digits.size(), number);
    const double shortest = bk::text_to_double({digits.data(), end.ptr}).value;
    return reads_as(shortest, number) ? shortest : double{number};
}

/// Keeps a value that already reads as that float.
std::optional<PlannedValue> plan_single(float number, const bk::StoredValue* existing,
                                        ParserValue::Type type) {
    if (existing != nullptr && type != no_type && reads_as(existing->get_as_double(), number)) {
        return type == ParserValue::TYPE_DOUBLE ? plan_double(existing->get_as_double())
                                                : plan_integer(type, existing->get_as_int());
    }
    const std::optional<PlannedValue> plan = plan_real(double{number}, type);
    return plan && plan->type == ParserValue::TYPE_DOUBLE ? plan_double(shortest_double(number)) : plan;
}

} // namespace

std::optional<PlannedValue> plan_value(const GivenValue& given, const bk::StoredValue* existing) {
    const ParserValue::Type type = existing == nullptr ? no_type : existing->type();
    const bool is_number =
        type == ParserValue::TYPE_CHAR || type == ParserValue::TYPE_INT || type == ParserValue::TYPE_DOUBLE;
    switch (given.kind) {
    case GivenKind::boolean:
        return plan_integer(ParserValue::TYPE_BOOL, static_cast<int>(given.integer));
    case GivenKind::integer:
        return plan_whole(given.integer, type);
    case GivenKind::real:
        return plan_real(given.real, type);
    case GivenKind::single:
        return plan_single(static_cast<float>(given.real), existing, is_number ? type : no_type);
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

bool is_equal(const bk::StoredValue& value, const PlannedValue& planned) {
    if (value.type() != planned.type) {
        return false;
    }
    switch (planned.type) {
    case ParserValue::TYPE_BOOL:
        return value.get_as_bool() == (planned.integer != 0);
    case ParserValue::TYPE_DOUBLE:
        return std::bit_cast<std::uint64_t>(value.get_as_double()) ==
               std::bit_cast<std::uint64_t>(planned.real);
    case ParserValue::TYPE_STRING:
        return value.string() == planned.text;
    case ParserValue::TYPE_BINARY_DATA:
        return value.bytes() == planned.text;
    default:
        return value.get_as_int() == planned.integer;
    }
}

} // namespace bk_parser
