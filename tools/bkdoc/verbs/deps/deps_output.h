#pragma once

#include "output/output.h"
#include "verbs/deps/include_graph.h"

#include <vector>

namespace bkdoc {

/// The files below each document, as a tree. What a file includes is drawn once.
void write_deps_tree(const IncludeGraph& graph, const std::vector<std::size_t>& documents, Output& out);
/// The files that include a file, and those that include these.
void write_reverse_tree(const IncludeGraph& graph, std::size_t node, Output& out);
/// A line for each directive whose file was not included, with what was tried.
void write_missing(const IncludeGraph& graph, Output& out);
/// A graph in the language of Graphviz.
void write_deps_dot(const IncludeGraph& graph, Output& out);
/// An object with all files and their directives (docs/schemas/deps.schema.json).
void write_deps_json(const IncludeGraph& graph, const std::vector<std::size_t>& documents, Output& out);

/// How many directives have no file.
std::size_t count_missing(const IncludeGraph& graph);

} // namespace bkdoc
