#include "input/form_mark.h"

namespace bkdoc {

using bk_parser::Form;

Form form_of(std::string_view first_bytes) noexcept {
    for (const Form form : {Form::binary, Form::enciphered, Form::archive}) {
        if (first_bytes.starts_with(form_mark(form))) {
            return form;
        }
    }
    return Form::text;
}

std::string_view form_mark(Form form) noexcept {
    switch (form) {
    case Form::binary:
        return "UDFS";
    case Form::enciphered:
        return "KWBF";
    case Form::archive:
        return "KWAF";
    case Form::text:
        break;
    }
    return {};
}

} // namespace bkdoc
