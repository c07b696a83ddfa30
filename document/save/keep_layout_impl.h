#pragma once

#include "document/load/document_state_impl.h"
#include "document/save.h"

#include <string>

namespace bk_parser {

/// Saves a document that was read from text files to `path`, which is absolute and was given so, so that only the bytes of what was changed change. With
/// `preview` nothing is written: it gets what would change. The path is empty for the preview of a text in memory.
SaveResult save_keeping_layout(DocumentState& state, const std::string& path,
                               const std::filesystem::path& given, const SaveOptions& options,
                               std::vector<FileChange>* preview);

} // namespace bk_parser
