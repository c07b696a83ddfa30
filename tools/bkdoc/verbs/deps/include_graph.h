#pragma once

#include "document/load.h"

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace bkdoc {

/// The places where a file was looked for in vain, each once: search folders may be one and the same.
std::vector<std::filesystem::path> places_tried(const bk_parser::Include& include);

/// Which files include which, over many documents.
class IncludeGraph {
public:
    /// A directive and the file that it brings.
    struct Edge {
        bk_parser::Include include;
        std::optional<std::size_t> target; // nothing when no file was found
    };
    struct Node {
        std::string name; // as it was found first
        std::filesystem::path path;
        std::vector<Edge> edges;
        bool is_filled = false; // its directives are known
    };

    /// Adds what a document includes; the position of its own node. A file that was met before stays as it is.
    std::size_t add(const std::string& name, const bk_parser::Document& document);

    const std::vector<Node>& nodes() const noexcept { return nodes_; }
    /// The node of a file by its absolute path.
    std::optional<std::size_t> find(const std::filesystem::path& path) const;
    /// For each node, those whose directives lead to it, with the directive.
    struct Source {
        std::size_t node;
        const bk_parser::Include* include;
    };
    std::vector<std::vector<Source>> sources() const;

private:
    std::size_t node_of(const std::filesystem::path& path, const std::string& name);

    std::vector<Node> nodes_;
    std::map<std::filesystem::path, std::size_t> by_path_;
};

} // namespace bkdoc
