#pragma once

#include "document/load/document_state_impl.h"
#include "document/save.h"

#include <string>

namespace bk_parser {

/// Saves a document that was read from text files to the absolute `path`, and changes only the bytes of what was edited.
/// `given` is the path as the host spelled it. With `preview`, writes nothing and fills in what would change; `path` is then
/// empty for a text in memory.
SaveResult save_keeping_layout(DocumentState& state, const std::string& path,
                               const std::filesystem::path& given, const SaveOptions& options,
                               std::vector<FileChange>* preview);

} // namespace bk_parser
