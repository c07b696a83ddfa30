#pragma once

#include "document/json.h"
#include "document/load.h"

#include <optional>
#include <string>
#include <string_view>

namespace bkdoc {

/// The words of the options that choose a form.
inline constexpr std::string_view storage_choices = "text|binary|cipher|archive|json|json-plain|ndjson";

/// How a document is to be stored: in a form, or as JSON.
struct Storage {
    bk_parser::Form form = bk_parser::Form::text;
    std::optional<bk_parser::JsonShape> json;

    bool is_bytes() const noexcept { return form != bk_parser::Form::text; }
};

/// The storage that a word of storage_choices means.
Storage storage_named(std::string_view word) noexcept;

/// storage_choices as a list in a sentence, with commas.
std::string storage_list();

/// Why a document cannot be stored that way, in one line; empty when it can.
std::string why_not_stored(const Storage& storage, bool has_key, bool to_terminal);

} // namespace bkdoc
