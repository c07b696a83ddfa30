#include "core/numbers/core_number_impl.h"
#include "core/numbers/core_number_margined_impl.h"
#include "parser/model/parser_value_impl.h"

namespace bk {

void ValueAccess::convert_spelling(const ParserValue& value) noexcept {
    ParserValue::Scalar& scalar = value.spelled_.scalar;
    switch (value.get_type()) {
    case ParserValue::TYPE_BOOL:
        scalar.as_bool = spelling(value) == "yes";
        break;
    case ParserValue::TYPE_CHAR:
        scalar.as_char = static_cast<char>(spelled_int(value));
        break;
    case ParserValue::TYPE_INT:
        scalar.as_int = spelled_int(value);
        break;
    case ParserValue::TYPE_DOUBLE:
        scalar.as_double = spelled_double(value);
        break;
    default:
        return;
    }
    value.bits_ |= ParserValue::VALUE_HELD;
}

/// Whether the spelling is in the text area of the list, which follows the values.
bool ValueAccess::has_margin(const ParserValue& value) noexcept {
    static_assert(sizeof(ParserValue) >= number_margin);
    return value.size_ != 0 && !value.has(ParserValue::TEXT_OWNED);
}

int ValueAccess::spelled_int(const ParserValue& value) noexcept {
    const std::string_view text(value.spelled_.text, value.size_);
    int number = 0;
    if (!has_margin(value) || !read_margined_int(text, number)) {
        number = text_to_int(text).value;
    }
    return number;
}

double ValueAccess::spelled_double(const ParserValue& value) noexcept {
    const std::string_view text(value.spelled_.text, value.size_);
    double number = 0.0;
    if (!has_margin(value) || !read_margined_decimal(text, number)) {
        number = clamp_to_finite(text_to_double(text).value);
    }
    return number;
}

} // namespace bk
