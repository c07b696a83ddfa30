#pragma once

#include "parser/parser_group.h"

#include <string>

namespace bk_python {

/// An entry a line, four blanks a level; OverflowError where that would be more than 4 GiB, before anything is printed.
std::string indented_text(const ParserGroup& group);
/// All on one line.
std::string compact_text(const ParserGroup& group);

} // namespace bk_python
