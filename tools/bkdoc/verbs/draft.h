#pragma once

#include "input/document.h"
#include "input/stream_device.h"
#include "tree/tree_compare.h"

#include <optional>
#include <string>

namespace bkdoc {

/// Stores the document in a form as the draft of the device. Else why that cannot be, as one line.
std::optional<std::string> write_draft(Document& document, DocumentForm form, const std::string& key,
                                       StreamDevice& device);

/// What the draft gives back when it is read.
struct DraftProof {
    std::string refusal;               // why it cannot be read; else empty
    std::optional<Difference> loss;    // of names or values
    std::optional<Difference> leaving; // of anything
};
DraftProof prove_draft(const Document& document, const std::string& key, StreamDevice& device);

} // namespace bkdoc
