#pragma once

#include "document/values.h"
#include "parser/parser_value.h"

#include <optional>
#include <string_view>

namespace bk_parser {

/// What a value is to become: its type, and the member that the type goes by.
struct PlannedValue {
    ParserValue::Type type = ParserValue::TYPE_BOOL;
    int integer = 0; // of a bool or a char, too
    double real = 0.0;
    std::string_view text; // of a string, or bytes
};

/// Chooses the type for what is given. A number keeps the type of `existing`, which may be null, when that can hold
/// it. Nothing when no value can hold it.
std::optional<PlannedValue> plan_value(const GivenValue& given, const ParserValue* existing);

/// Whether a value is already what is planned.
bool is_equal(const ParserValue& value, const PlannedValue& planned);

} // namespace bk_parser
