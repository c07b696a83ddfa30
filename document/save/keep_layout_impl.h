#pragma once

#include "document/load/document_state_impl.h"
#include "document/save.h"

#include <string>

namespace bk_parser {

/// Saves a document that was read from text files to `path`, which is absolute, so that only the bytes of what was changed change.
SaveResult save_keeping_layout(DocumentState& state, const std::string& path, const SaveOptions& options);

} // namespace bk_parser
