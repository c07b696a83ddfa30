#pragma once

#include "document/load.h"

#include <cstddef>
#include <string_view>

namespace bkdoc {

/// How many bytes at the beginning of a file show its form.
inline constexpr std::size_t form_mark_size = 4;

/// The form of a file that begins with these bytes.
bk_parser::Form form_of(std::string_view first_bytes) noexcept;

/// The bytes at the beginning of a file of this form; none for a text.
std::string_view form_mark(bk_parser::Form form) noexcept;

} // namespace bkdoc
