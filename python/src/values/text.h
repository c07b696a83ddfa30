#pragma once

#include "python.h"

#include "parser/parser_group.h"

#include <string>

namespace bk_python {

/// Prints one entry per line, four blanks per level. OverflowError, before anything is printed, when the text would have more
/// than 4 GiB.
std::string indented_text(const ParserGroup& group);
/// Prints everything on one line.
std::string compact_text(const ParserGroup& group);
/// The version line of a document. Without it, escapes in these strings would be read as plain characters.
std::string version_line();

} // namespace bk_python
