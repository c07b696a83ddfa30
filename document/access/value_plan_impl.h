#pragma once

#include "document/values.h"
#include "parser/parser_value.h"

#include <optional>
#include <string_view>

namespace bk_parser {

/// The new type and content of a value. The type decides which member has the content.
struct PlannedValue {
    ParserValue::Type type = ParserValue::TYPE_BOOL;
    int integer = 0; // also of a bool or a char
    double real = 0.0;
    std::string_view text; // characters of a string, or bytes
};

/// Chooses the type for a given value. A number keeps the type of `existing`, which may be null, when that type can hold
/// it. Returns nothing when no value can hold it.
std::optional<PlannedValue> plan_value(const GivenValue& given, const bk::StoredValue* existing);

/// Whether a value already has the planned type and content.
bool is_equal(const bk::StoredValue& value, const PlannedValue& planned);

} // namespace bk_parser
