#pragma once

#include "input/opened_document.h"
#include "tree/tree_compare.h"

#include <optional>
#include <string>

namespace bkdoc {

/// A document as it would be stored in a form.
struct Draft {
    std::string bytes;
    std::string refusal; // why it cannot be written, as one line; else empty
};
Draft make_draft(OpenedDocument& document, bk_parser::Form form, const std::string& key);

/// What a draft gives back when it is read.
struct DraftProof {
    std::string refusal;               // why it cannot be read; else empty
    std::optional<Difference> loss;    // of names or values
    std::optional<Difference> leaving; // of anything
};
DraftProof prove_draft(const OpenedDocument& document, const Draft& draft, const OpenOptions& options);

} // namespace bkdoc
