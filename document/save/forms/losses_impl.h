#pragma once

#include "document/load.h"
#include "document/problem.h"
#include "parser/parser_group.h"

#include <string>
#include <vector>

namespace bk_parser {

/// Finds what a form cannot carry. The message of each loss begins with the path of its entry. `has_escapes` says whether strings of the
/// text form have escapes.
std::vector<Problem> find_losses(const ParserGroup& root, Form form, bool has_escapes);

} // namespace bk_parser
