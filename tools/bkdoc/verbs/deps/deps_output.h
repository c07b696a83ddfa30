#pragma once

#include "output/output.h"
#include "verbs/deps/include_graph.h"

#include <vector>

namespace bkdoc {

/// Draws the files below each document as a tree. The includes of a file are drawn once.
void write_deps_tree(const IncludeGraph& graph, const std::vector<std::size_t>& documents, Output& out);
/// Lists the files that include a file, those that include these, and so on.
void write_reverse_tree(const IncludeGraph& graph, std::size_t node, Output& out);
/// Writes a line for each include that failed, with the paths that were tried.
void write_missing(const IncludeGraph& graph, Output& out);
/// Writes a graph in the language of Graphviz.
void write_deps_dot(const IncludeGraph& graph, Output& out);
/// Writes an object with all files of the graph and their directives, and the names of the documents that were asked for.
void write_deps_json(const IncludeGraph& graph, const std::vector<std::string>& documents, Output& out);

/// How many directives failed.
std::size_t count_missing(const IncludeGraph& graph);

} // namespace bkdoc
