#pragma once

#include "input/opened_document.h"
#include "tree/tree_compare.h"
#include "verbs/storage.h"

#include <optional>
#include <string>

namespace bkdoc {

/// The bytes of a document in the form that it would be stored in.
struct Draft {
    std::string bytes;
    std::string refusal; // why it cannot be written, in one line; else empty
};
Draft make_draft(OpenedDocument& document, const Storage& storage, const std::string& key);

/// The result of reading a draft back.
struct DraftProof {
    std::string refusal;            // why it cannot be read; else empty
    std::optional<Difference> loss; // the first thing that the form does not carry
};
DraftProof prove_draft(const OpenedDocument& document, const Draft& draft, const Storage& storage,
                       const OpenOptions& options);

} // namespace bkdoc
