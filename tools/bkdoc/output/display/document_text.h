#pragma once

#include "parser/parser_group.h"

#include <string>

namespace bkdoc {

/// The version line of a written document, without a line end.
std::string version_line();

/// A document as the library writes it: the version line, and the tree with one entry per line. This function and the next one
/// throw std::bad_alloc when memory runs out.
std::string document_text(const ParserGroup& root);
/// A document with all entries on one line after the version line.
std::string compact_document_text(const ParserGroup& root);

} // namespace bkdoc
