#pragma once

#include "parser/parser_group.h"

#include <optional>
#include <string>

namespace bkdoc {

/// Where two trees part.
struct Difference {
    std::string path;   // names from the root on, as in "scene/light:2"; empty at the root
    std::string what;   // "value 2", "entry 3", "number of values", ...
    std::string first;  // what the first tree has there
    std::string second; // what the second has
};

/// What counts. Everything: names, kinds, templates, array counts, and values with their types; a number by its value,
/// not by its spelling. The content: names and values, a number whatever its type.
enum class Likeness { everything, content };

/// The first difference in document order; nothing when the trees are equal. Any depth will do.
std::optional<Difference> find_difference(const ParserGroup& first, const ParserGroup& second,
                                          Likeness likeness);

} // namespace bkdoc
