#pragma once

#include "document/load/document_state_impl.h"

#include <string>

namespace bk_parser {

/// The name that a file has behind all symbolic links of its path; two paths of one file have the same. UTF-8, absolute where the path is.
std::string real_path(const std::string& path);

/// Whether the path leads to the file that the document was loaded from, or saved to last.
bool is_own_file(const DocumentState& state, const std::string& path);

/// Whether the path leads to a file that the document includes.
bool is_included_file(const DocumentState& state, const std::string& path);

} // namespace bk_parser
