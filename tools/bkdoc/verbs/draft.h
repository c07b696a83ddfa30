#pragma once

#include "input/opened_document.h"
#include "tree/tree_compare.h"
#include "verbs/storage.h"

#include <optional>
#include <string>

namespace bkdoc {

/// A document as it would be stored in a form.
struct Draft {
    std::string bytes;
    std::string refusal; // why it cannot be written, as one line; else empty
};
Draft make_draft(OpenedDocument& document, const Storage& storage, const std::string& key);

/// What a draft gives back when it is read.
struct DraftProof {
    std::string refusal;            // why it cannot be read; else empty
    std::optional<Difference> loss; // the first thing that the form does not carry
};
DraftProof prove_draft(const OpenedDocument& document, const Draft& draft, const Storage& storage,
                       const OpenOptions& options);

} // namespace bkdoc
