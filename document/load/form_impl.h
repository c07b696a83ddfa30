#pragma once

#include "document/load.h"

#include <string_view>

namespace bk_parser {

/// The form of a document that begins so.
Form form_of(std::string_view bytes) noexcept;

/// What a file is that is no document: "a PNG image". Empty of one that may be a text of ours.
std::string_view foreign_kind(std::string_view bytes) noexcept;

/// Whether a text is one string or one number of JSON and nothing else. A document may include such a text as a value, so that
/// it takes more to know that it is foreign: that it is a document of its own, and is called one of JSON.
bool is_json_value(std::string_view bytes) noexcept;

/// The same, where one byte of what it begins with may be wrong. What has one wrong has a NUL further on, which texts have not.
Form likely_form_of(std::string_view bytes) noexcept;

} // namespace bk_parser
