#include "verbs/deps/include_graph.h"

#include "platform/paths.h"

#include <algorithm>
#include <utility>

namespace bkdoc {

std::vector<std::filesystem::path> places_tried(const bk_parser::Include& include) {
    std::vector<std::filesystem::path> places;
    for (const std::filesystem::path& place : include.tried) {
        if (std::find(places.begin(), places.end(), place) == places.end()) {
            places.push_back(place);
        }
    }
    return places;
}

std::size_t IncludeGraph::node_of(const std::filesystem::path& path, const std::string& name) {
    const auto [known, is_new] = by_path_.try_emplace(path.lexically_normal(), nodes_.size());
    if (is_new) {
        nodes_.push_back({name, path, {}, false});
    }
    return known->second;
}

std::size_t IncludeGraph::add(const std::string& name, const bk_parser::Document& document) {
    std::map<std::filesystem::path, std::size_t> by_found; // nodes by file name in this document
    std::vector<std::size_t> fresh;
    std::optional<std::size_t> top;
    for (const bk_parser::DocumentFile& file : document.files()) {
        const std::string shown_name = file.file.empty() ? name : slashed(file.file);
        const std::size_t node = node_of(file.path.empty() ? path_of(name) : file.path, shown_name);
        by_found.emplace(file.file, node);
        top = top ? top : node;
        if (!nodes_[node].is_filled) {
            nodes_[node].is_filled = true;
            fresh.push_back(node);
        }
    }
    std::vector<bool> is_fresh(nodes_.size());
    for (const std::size_t node : fresh) {
        is_fresh[node] = true;
    }
    for (const bk_parser::Include& include : document.includes()) {
        const auto holder = by_found.find(include.file);
        if (holder == by_found.end() || !is_fresh[holder->second]) {
            continue;
        }
        Edge edge{include, std::nullopt};
        if (!include.path.empty()) {
            edge.target = node_of(include.path, slashed(include.found));
            is_fresh.resize(nodes_.size());
        }
        nodes_[holder->second].edges.push_back(std::move(edge));
    }
    return top ? *top : node_of(path_of(name), name);
}

std::optional<std::size_t> IncludeGraph::find(const std::filesystem::path& path) const {
    const auto found = by_path_.find(path.lexically_normal());
    return found == by_path_.end() ? std::nullopt : std::optional(found->second);
}

std::vector<std::vector<IncludeGraph::Source>> IncludeGraph::sources() const {
    std::vector<std::vector<Source>> sources(nodes_.size());
    for (std::size_t node = 0; node < nodes_.size(); ++node) {
        for (const Edge& edge : nodes_[node].edges) {
            if (edge.target) {
                sources[*edge.target].push_back({node, &edge.include});
            }
        }
    }
    return sources;
}

template <class Wanted>
IncludeGraph IncludeGraph::part(Wanted wanted) const {
    IncludeGraph part;
    for (const Node& node : nodes_) {
        Node kept{node.name, node.path, {}, true};
        for (const Edge& edge : node.edges) {
            if (wanted(edge)) {
                kept.edges.push_back({edge.include, std::nullopt});
            }
        }
        if (!kept.edges.empty()) {
            part.nodes_.push_back(std::move(kept));
        }
    }
    return part;
}

IncludeGraph IncludeGraph::leading_to(std::size_t node) const {
    const std::vector<std::vector<Source>> by_node = sources();
    std::vector<bool> leads(nodes_.size());
    leads[node] = true;
    for (std::vector<std::size_t> open = {node}; !open.empty();) {
        const std::size_t next = open.back();
        open.pop_back();
        for (const Source& source : by_node[next]) {
            if (!leads[source.node]) {
                leads[source.node] = true;
                open.push_back(source.node);
            }
        }
    }
    return part([&leads](const Edge& edge) { return edge.target && leads[*edge.target]; });
}

IncludeGraph IncludeGraph::missing() const {
    return part([](const Edge& edge) { return !edge.include.problem.empty(); });
}

} // namespace bkdoc
