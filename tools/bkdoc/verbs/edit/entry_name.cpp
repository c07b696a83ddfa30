#include "verbs/edit/entry_name.h"

#include "document/path.h"
#include "verbs/edit/literals.h"

namespace bkdoc {

std::string why_no_name(std::string_view name) {
    const Literals value(name, WantedType::as_it_is, false);
    const ParserValue::Type type = value.refusal().empty() ? value.type(0) : ParserValue::TYPE_STRING;
    if (value.refusal().empty() && value.count() == 1) {
        if (type == ParserValue::TYPE_BOOL) {
            return "it is a boolean, and would be read as a value";
        }
        if (is_number(type)) {
            return "it is a number, and would be read as a value";
        }
    }
    const bool is_one_step = name.find_first_of("/<[@\"") == std::string_view::npos;
    if (name.starts_with('#') && is_one_step && !bk_parser::path_error(name)) {
        return "it is the name of a keyword, and this entry is none";
    }
    return "names begin with a letter or _, and go on with letters, digits, _ and '.'; those of keywords "
           "begin with #";
}

void warn_of_name(std::string_view name, Streams& streams) {
    const bool is_boolean = name == "true" || name == "false";
    if (is_boolean || name == "inf" || name == "nan") {
        complain(streams, "warning: '" + std::string(name) + "' is a name here, not a value: " +
                              (is_boolean ? "booleans are yes and no" : "infinity is spelled +inf"));
    }
}

std::string_view last_name(std::string_view path) noexcept {
    const std::string_view step = path.substr(path.rfind('/') + 1);
    return step.substr(0, step.find_first_of("<[@"));
}

} // namespace bkdoc
