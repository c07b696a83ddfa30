#pragma once

#include "parser/parser_group.h"

#include <optional>
#include <string>

namespace bkdoc {

/// The first difference of two trees.
struct Difference {
    std::string path;   // names from the root, such as "scene/light:2"; empty at the root
    std::string what;   // "value 2", "entry 3", "number of values", ...
    std::string first;  // what the first tree has there
    std::string second; // what the second has
};

/// What is compared. `everything`: names, kinds, templates, array counts, and values with their types; numbers by value, not by
/// spelling. `content`: names and values, whatever type a number has.
enum class Likeness { everything, content };

/// The first difference in document order; nothing when the trees are equal. Uses no stack for depth.
std::optional<Difference> find_difference(const ParserGroup& first, const ParserGroup& second,
                                          Likeness likeness);

} // namespace bkdoc
