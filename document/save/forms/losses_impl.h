#pragma once

#include "document/load.h"
#include "document/problem.h"
#include "parser/parser_group.h"

#include <string>
#include <vector>

namespace bk_parser {

/// Finds what a form cannot carry: for each loss, the path of names to its entry. `has_escapes` is whether strings of the text
/// have escapes.
std::vector<Problem> find_losses(const ParserGroup& root, Form form, bool has_escapes);

} // namespace bk_parser
