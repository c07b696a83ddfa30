#pragma once

#include "parser/parser_group.h"

#include <string>

namespace bkdoc {

/// The line that says the version of what is written, without a line end.
std::string version_line();

/// Both throw std::bad_alloc when memory ends. A document as the library writes it: the version line, and the tree, one entry a line.
std::string document_text(const ParserGroup& root);
/// The same with all entries on one line behind the version line.
std::string compact_document_text(const ParserGroup& root);

} // namespace bkdoc
