#include "input/document_form.h"

namespace bkdoc {

DocumentForm form_of(std::string_view first_bytes) noexcept {
    for (const DocumentForm form : {DocumentForm::binary, DocumentForm::enciphered, DocumentForm::archive}) {
        if (first_bytes.starts_with(form_mark(form))) {
            return form;
        }
    }
    return DocumentForm::text;
}

std::string_view form_mark(DocumentForm form) noexcept {
    switch (form) {
    case DocumentForm::binary:
        return "UDFS";
    case DocumentForm::enciphered:
        return "KWBF";
    case DocumentForm::archive:
        return "KWAF";
    case DocumentForm::text:
        break;
    }
    return {};
}

std::string_view form_word(DocumentForm form) noexcept {
    switch (form) {
    case DocumentForm::binary:
        return "binary";
    case DocumentForm::enciphered:
        return "enciphered text";
    case DocumentForm::archive:
        return "archive";
    case DocumentForm::text:
        break;
    }
    return "text";
}

} // namespace bkdoc
