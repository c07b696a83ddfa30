#pragma once

#include "python.h"

#include "parser/parser_group.h"

#include <string>

namespace bk_python {

/// An entry a line, four blanks a level; OverflowError where that would be more than 4 GiB, before anything is printed.
std::string indented_text(const ParserGroup& group);
/// All on one line.
std::string compact_text(const ParserGroup& group);
/// The line that a document begins with. Without it, the escapes in strings of these texts would be read as they stand.
std::string version_line();

} // namespace bk_python
