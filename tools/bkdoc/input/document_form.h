#pragma once

#include <cstddef>
#include <string_view>

namespace bkdoc {

/// What a document is stored as.
enum class DocumentForm { text, binary, enciphered, archive };

/// How many bytes at the beginning of a file tell its form.
constexpr std::size_t form_mark_size = 4;

/// The form of a file that begins so.
DocumentForm form_of(std::string_view first_bytes) noexcept;

/// The bytes that a file of this form begins with; a text has none.
std::string_view form_mark(DocumentForm form) noexcept;

/// "text", "binary", ...
std::string_view form_word(DocumentForm form) noexcept;

} // namespace bkdoc
