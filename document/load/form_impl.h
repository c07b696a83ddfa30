#pragma once

#include "document/load.h"

#include <string_view>

namespace bk_parser {

/// The form of a document that begins so.
Form form_of(std::string_view bytes) noexcept;

/// What a file is that is no document: "a PNG image". Empty of one that may be a text of ours.
std::string_view foreign_kind(std::string_view bytes) noexcept;

} // namespace bk_parser
