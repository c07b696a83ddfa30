#include "core/numbers/core_number_impl.h"
#include "core/numbers/core_number_margined_impl.h"
#include "core/reports/core_diagnostic_impl.h"
#include "parser/model/parser_value_impl.h"

#include <iterator>

/// Reads a value as a type, which may differ from its own.
namespace bk {

namespace {

/// Returns the least int for a number that does not fit and for not-a-number. It converts only numbers that fit, because any other would
/// raise the invalid-operation exception. That holds even when the compiler computes both branches and selects one.
int truncate_to_int(double value) noexcept {
    constexpr double above = 2147483648.0;
    const bool fits = value > -above - 1.0 && value < above;
    return static_cast<int>(fits ? value : -above);
}

int spelled_int(std::string_view text, bool has_margin) noexcept {
    int number = 0;
    if (!has_margin || !read_margined_int(text, number)) {
        number = text_to_int(text).value;
    }
    return number;
}

double spelled_double(std::string_view text, bool has_margin) noexcept {
    double number = 0.0;
    if (!has_margin || !read_margined_decimal(text, number)) {
        number = clamp_to_finite(text_to_double(text).value);
    }
    return number;
}

} // namespace

const char* type_name(ParserValue::Type type) noexcept {
    static constexpr const char* names[] = {"TYPE_GROUP",  "TYPE_BOOL",   "TYPE_CHAR",        "TYPE_INT",
                                            "TYPE_DOUBLE", "TYPE_STRING", "TYPE_BINARY_DATA", "TYPE_WORD"};
    return type < std::size(names) ? names[type] : "TYPE_UNKNOWN";
}

StoredValue::Scalar StoredValue::read_spelling(Type type, std::string_view text, bool has_margin) noexcept {
    switch (type) {
    case ParserValue::TYPE_BOOL:
        return scalar_of(type, text == "yes" ? 1 : 0);
    case ParserValue::TYPE_CHAR:
        return scalar_of(type, static_cast<unsigned char>(spelled_int(text, has_margin)));
    case ParserValue::TYPE_INT:
        return scalar_of(type, static_cast<unsigned int>(spelled_int(text, has_margin)));
    default:
        return {.as_double = spelled_double(text, has_margin)};
    }
}

const StoredValue::Scalar& StoredValue::converted() const noexcept {
    static_assert(sizeof(StoredValue) >= number_margin, "the values are before the text area");
    const std::uint32_t bits = mark();
    const auto type = static_cast<Type>(bits >> type_shift & largest_type);
    if (!is_spelled(bits) || type < ParserValue::TYPE_BOOL || type > ParserValue::TYPE_DOUBLE) {
        return plain_.content.scalar;
    }
    const std::uint32_t size = bits & size_mask;
    if (size == size_apart) [[unlikely]] {
        Apart& apart = *plain_.content.apart;
        if (!apart.is_converted) {
            apart.scalar = read_spelling(type, spelling(), false);
            apart.is_converted = true;
        }
        return apart.scalar;
    }
    return hold(read_spelling(type, {text(), size}, size != 0));
}

void StoredValue::report_mismatch(const char* read) const {
    report_warning("ParserValue.", read, ": type mismatch, value type is '", type_name(type()), "' \n");
}

/// Not inline, like the two below: a reader of a value that is held calls it last, and saves no registers for it.
[[gnu::noinline]] bool StoredValue::read_as_bool() const {
    const Scalar& held = scalar();
    switch (type()) {
    case ParserValue::TYPE_BOOL:
        return held.as_bool;
    case ParserValue::TYPE_CHAR:
        return held.as_char != 0;
    case ParserValue::TYPE_INT:
        return held.as_int != 0;
    case ParserValue::TYPE_DOUBLE:
        return is_not_zero(held.as_double);
    default:
        report_mismatch("get_as_bool");
        return false;
    }
}

char StoredValue::get_as_char() const {
    const Scalar& held = scalar();
    switch (type()) {
    case ParserValue::TYPE_BOOL:
        return held.as_bool ? 1 : 0;
    case ParserValue::TYPE_CHAR:
        return held.as_char;
    case ParserValue::TYPE_INT:
        return static_cast<char>(held.as_int);
    case ParserValue::TYPE_DOUBLE:
        return static_cast<char>(truncate_to_int(held.as_double));
    default:
        report_mismatch("get_as_char");
        return 0;
    }
}

[[gnu::noinline]] int StoredValue::read_as_int() const {
    if (has_only_text(ParserValue::TYPE_INT)) {
        const int number = spelled_int(text_in_area(), true);
        hold(scalar_of(ParserValue::TYPE_INT, static_cast<unsigned int>(number)));
        return number;
    }
    const Scalar& held = scalar();
    switch (type()) {
    case ParserValue::TYPE_BOOL:
        return held.as_bool ? 1 : 0;
    case ParserValue::TYPE_CHAR:
        return static_cast<signed char>(held.as_char);
    case ParserValue::TYPE_INT:
        return held.as_int;
    case ParserValue::TYPE_DOUBLE:
        return truncate_to_int(held.as_double);
    default:
        report_mismatch("get_as_int");
        return 0;
    }
}

[[gnu::noinline]] double StoredValue::read_as_double() const {
    if (has_only_text(ParserValue::TYPE_DOUBLE)) {
        const double number = spelled_double(text_in_area(), true);
        hold({.as_double = number});
        return number;
    }
    const Scalar& held = scalar();
    switch (type()) {
    case ParserValue::TYPE_BOOL:
        return held.as_bool ? 1.0 : 0.0;
    case ParserValue::TYPE_CHAR:
        return static_cast<signed char>(held.as_char);
    case ParserValue::TYPE_INT:
        return held.as_int;
    case ParserValue::TYPE_DOUBLE:
        return held.as_double;
    default:
        report_mismatch("get_as_double");
        return 0.0;
    }
}

const CoreString& StoredValue::get_as_string() const {
    if (type() != ParserValue::TYPE_STRING) {
        report_mismatch("get_as_string");
        return CoreString::get_null_string();
    }
    return held_string();
}

void* StoredValue::get_as_binary_data(unsigned int& size) const {
    if (type() != ParserValue::TYPE_BINARY_DATA) {
        report_mismatch("get_as_binary_data");
        return nullptr;
    }
    size = plain_.offset;
    return plain_.content.bytes;
}

} // namespace bk
