#pragma once

#include "document/load.h"

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace bkdoc {

/// The paths where a file was not found, each once, because several search folders may be the same.
std::vector<std::filesystem::path> places_tried(const bk_parser::Include& include);

/// The graph of includes of many documents.
class IncludeGraph {
public:
    /// A directive, and the file that it includes.
    struct Edge {
        bk_parser::Include include;
        std::optional<std::size_t> target; // empty when no file was found
    };
    struct Node {
        std::string name; // as it was first found
        std::filesystem::path path;
        std::vector<Edge> edges;
        bool is_filled = false; // its directives were added
    };

    /// Adds the includes of a document, and returns the position of its own node. A file that is already in the graph stays as
    /// it is.
    std::size_t add(const std::string& name, const bk_parser::Document& document);

    const std::vector<Node>& nodes() const noexcept { return nodes_; }
    /// The node of a file by its absolute path.
    std::optional<std::size_t> find(const std::filesystem::path& path) const;
    /// For each node, the nodes that include it, each with its directive.
    struct Source {
        std::size_t node;
        const bk_parser::Include* include;
    };
    std::vector<std::vector<Source>> sources() const;

    /// The directives that lead to a file, directly or through other files, and the files that have them. The edges have no
    /// targets.
    IncludeGraph leading_to(std::size_t node) const;
    /// The directives that failed, and the files that have them. The edges have no targets.
    IncludeGraph missing() const;

private:
    template <class Wanted>
    IncludeGraph part(Wanted wanted) const;
    std::size_t node_of(const std::filesystem::path& path, const std::string& name);

    std::vector<Node> nodes_;
    std::map<std::filesystem::path, std::size_t> by_path_;
};

} // namespace bkdoc
