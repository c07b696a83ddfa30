#include "verbs/edit/value_change.h"

#include "document/access.h"
#include "output/display/text_display.h"
#include "output/display/value_display.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <vector>

namespace bkdoc {

namespace {

char operation_of(std::string_view text) noexcept {
    if (text.starts_with('=')) {
        return '=';
    }
    const bool is_known =
        text.size() > 1 && text[1] == '=' && std::string_view("+-*/").find(text[0]) != std::string_view::npos;
    return is_known ? text[0] : '\0';
}

std::string_view operand_of(std::string_view text) noexcept {
    return operation_of(text) == '\0' ? "0" : text.substr(operation_of(text) == '=' ? 1 : 2);
}

double calculated(double left, char operation, double right) noexcept {
    return operation == '+'   ? left + right
           : operation == '-' ? left - right
           : operation == '*' ? left * right
                              : left / right;
}

/// Removes the rounding error of one operation, so that 3.0 * 1.1 is 3.3 and not 3.3000000000000003: returns the nearest number
/// with 15 digits when it is within 4 epsilon.
double without_rounding_error(double number) noexcept {
    constexpr int digits = 15;
    constexpr double rounding = 4 * std::numeric_limits<double>::epsilon();
    char text[40];
    const auto written =
        std::to_chars(text, text + sizeof text, number, std::chars_format::scientific, digits - 1);
    double short_number = number;
    std::from_chars(text, written.ptr, short_number);
    return std::fabs(short_number - number) <= rounding * std::fabs(number) ? short_number : number;
}

std::string number_text(double number) {
    CoreString text;
    text += number;
    return std::string(text.get_view());
}

bool is_int(double number) noexcept {
    return number >= std::numeric_limits<int>::min() && number <= std::numeric_limits<int>::max() &&
           number == std::trunc(number);
}

/// How many values are before the first group.
unsigned int leading_values(const ParserEntry& entry) {
    unsigned int count = 0;
    while (count < entry.get_value_count() && !entry.is_value_group(count)) {
        ++count;
    }
    return count;
}

std::string spelling(const ParserEntry& entry, unsigned int i) {
    return i < entry.get_value_count() ? spelled_value(entry, i) : std::string();
}

} // namespace

ValueChange::ValueChange(std::string_view text, WantedType type)
    : type_(type), operation_(operation_of(text)), operand_(operand_of(text)),
      literals_(operand_, operation_ == '=' ? type : WantedType::as_it_is, false) {
    if (operation_ == '\0') {
        refusal_ = "'" + shown(text, shown_text) + "' is not a change; write =VALUES, +=N, -=N, *=N or /=N";
        return;
    }
    if (operand_.empty()) {
        refusal_ = operation_ == '=' ? "'=' needs a value, as in =60.0 or '=\"sun\"'"
                                     : std::string(1, operation_) + "= needs a number";
        return;
    }
    refusal_ = literals_.refusal();
    if (operation_ == '=' || !refusal_.empty()) {
        return;
    }
    const bool is_one_number = literals_.count() == 1 && is_number(literals_.type(0));
    const bool is_one_string = literals_.count() == 1 && literals_.type(0) == ParserValue::TYPE_STRING;
    if (!is_one_number && !(is_one_string && operation_ == '+')) {
        refusal_ = std::string(1, operation_) + "= needs a number, not '" + shown(operand_, shown_text) + "'";
    } else if (is_one_number && type != WantedType::as_it_is && type != WantedType::integer &&
               type != WantedType::real) {
        refusal_ = "a calculation gives a number; only --type int and --type double go with it";
    }
}

ValueChange::Result ValueChange::apply(ParserEntry& entry, unsigned int value) const {
    return operation_ == '=' ? set(entry, value) : calculate(entry, value);
}

std::string ValueChange::type_refusal(const ParserEntry& entry, unsigned int i, unsigned int given) const {
    const ParserValue::Type has = entry.get_value_type(i);
    const ParserValue::Type gets = literals_.type(given);
    if (has == gets || type_ != WantedType::as_it_is) {
        return {};
    }
    if (is_number(has) && is_number(gets)) {
        const bool is_kept = has == ParserValue::TYPE_DOUBLE || is_int(literals_.given(given).real);
        return is_kept ? std::string()
                       : number_text(literals_.given(given).real) + " is no int, as " +
                             spelled_value(entry, i) + " is; --type double makes it a double";
    }
    const std::string_view option = gets == ParserValue::TYPE_BOOL     ? "bool"
                                    : gets == ParserValue::TYPE_STRING ? "string"
                                    : gets == ParserValue::TYPE_INT    ? "int"
                                                                       : "double";
    return spelled_value(entry, i) + " is of the type " + std::string(type_word(has)) +
           ", and the new value of the type " + std::string(type_word(gets)) + "; --type " +
           std::string(option) + " changes it";
}

ValueChange::Result ValueChange::set(ParserEntry& entry, unsigned int value) const {
    const bool is_whole = value == bk_parser::Visit::whole_entry;
    const unsigned int first = is_whole ? 0 : value;
    const unsigned int count = literals_.count();
    const unsigned int present = leading_values(entry);
    const bool has_group = present < entry.get_value_count();
    if (has_group && (is_whole ? count != present : first + count > present)) {
        return {0, present == 0
                       ? "holds a group, and no value"
                       : "has " + counted(present, "value", "values") + " before its group; give as many"};
    }
    std::vector<bk_parser::GivenValue> given;
    for (unsigned int i = 0; i < count; ++i) {
        given.push_back(literals_.given(i));
        if (first + i < entry.get_value_count()) {
            if (std::string refusal = type_refusal(entry, first + i, i); !refusal.empty()) {
                return {0, std::move(refusal)};
            }
        }
    }
    std::vector<std::string> before;
    for (unsigned int i = 0; i < entry.get_value_count(); ++i) {
        before.push_back(spelled_value(entry, i));
    }
    const auto end =
        is_whole && !has_group ? bk_parser::access::ListEnd::cut : bk_parser::access::ListEnd::keep;
    if (!bk_parser::access::set_values(entry, first, given, end)) {
        return {0, "cannot hold the new values"};
    }
    for (unsigned int i = 0; i < count; ++i) {
        if (type_ == WantedType::real && entry.is_value_int(first + i)) {
            entry.set_double(entry.get_double(first + i), first + i);
        } else if (type_ == WantedType::integer &&
                   entry.get_value_type(first + i) == ParserValue::TYPE_DOUBLE) {
            entry.set_int(entry.get_int(first + i), first + i);
        }
    }
    Result result;
    for (unsigned int i = 0; i < std::max<std::size_t>(entry.get_value_count(), before.size()); ++i) {
        result.changed += i >= before.size() || before[i] != spelling(entry, i) ? 1 : 0;
    }
    return result;
}

ValueChange::Result ValueChange::calculate(ParserEntry& entry, unsigned int value) const {
    const bool is_whole = value == bk_parser::Visit::whole_entry;
    const bool is_text = literals_.type(0) == ParserValue::TYPE_STRING;
    Result result;
    bool is_any = false;
    for (unsigned int i = is_whole ? 0 : value; i < (is_whole ? entry.get_value_count() : value + 1); ++i) {
        const ParserValue::Type has = entry.get_value_type(i);
        if (is_text ? has != ParserValue::TYPE_STRING : !is_number(has)) {
            continue;
        }
        is_any = true;
        const std::string before = spelled_value(entry, i);
        if (std::string refusal = calculate_value(entry, i); !refusal.empty()) {
            return {0, std::move(refusal)};
        }
        result.changed += before != spelled_value(entry, i) ? 1 : 0;
    }
    if (!is_any) {
        result.refusal = is_text ? "holds no string" : "holds no number";
    }
    return result;
}

/// Returns why the value stays; empty when it changed.
std::string ValueChange::calculate_value(ParserEntry& entry, unsigned int i) const {
    const bk_parser::GivenValue operand = literals_.given(0);
    if (operand.kind == bk_parser::GivenValue::Kind::text) {
        const std::string joined = std::string(entry.get_string(i).get_view()) + std::string(operand.text);
        bk_parser::set(entry, i, joined);
        return {};
    }
    const bool is_whole_operand = operand.kind == bk_parser::GivenValue::Kind::integer;
    const double right = is_whole_operand ? static_cast<double>(operand.integer) : operand.real;
    double number = without_rounding_error(calculated(entry.get_double(i), operation_, right));
    const auto told = [&] { return spelled_value(entry, i) + " " + operation_ + " " + operand_; };
    if (!std::isfinite(number)) {
        return told() + " is not a finite number";
    }
    const bool is_int_now = entry.get_value_type(i) == ParserValue::TYPE_INT;
    if (type_ == WantedType::integer) {
        number = std::round(number);
    }
    if (type_ == WantedType::real || (!is_int_now && type_ != WantedType::integer)) {
        entry.set_double(number, i);
    } else if (is_int(number)) {
        entry.set_int(static_cast<int>(number), i);
    } else {
        constexpr std::string_view cure = "; --type double makes it a double";
        return number == std::trunc(number)
                   ? told() + " is out of range for an int, which has 32 bits" + std::string(cure)
                   : told() + " is " + number_text(number) + ", which is not an int" + std::string(cure) +
                         ", --type int rounds it";
    }
    return {};
}

} // namespace bkdoc
