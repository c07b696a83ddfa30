#pragma once

#include "document/load.h"

#include <string_view>

namespace bk_parser {

/// The form of a document that begins with these bytes.
Form form_of(std::string_view bytes) noexcept;

/// What kind of file this is, when it is no document, for example "a PNG image". Empty for a file that may be a document.
std::string_view foreign_kind(std::string_view bytes) noexcept;

/// Whether a text is one JSON string or number and nothing else. A document may include such a text as a value. So it counts as JSON
/// only when it is not included and its file is named as JSON.
bool is_json_value(std::string_view bytes) noexcept;

/// The form of a damaged file: one of its first four bytes may differ from those of the form. Then the file must also contain a NUL,
/// because texts contain none.
Form likely_form_of(std::string_view bytes) noexcept;

} // namespace bk_parser
