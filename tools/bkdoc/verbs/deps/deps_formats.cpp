#include "output/json_writer.h"
#include "platform/paths.h"
#include "verbs/deps/deps_output.h"

namespace bkdoc {

namespace {

std::string dot_quoted(std::string_view text) {
    std::string result = "\"";
    for (const char character : text) {
        if (character == '"' || character == '\\') {
            result += '\\';
        }
        result += character == '\n' ? ' ' : character;
    }
    return result + "\"";
}

void write_include(const IncludeGraph::Edge& edge, JsonWriter& json) {
    json.begin_object();
    json.member("name", edge.include.name);
    json.member("line", edge.include.line);
    json.member("column", edge.include.column);
    if (!edge.include.found.empty()) {
        json.member("found", slashed(edge.include.found));
    }
    if (!edge.include.problem.empty()) {
        json.member("problem", edge.include.problem);
    }
    json.key("tried");
    json.begin_array();
    for (const std::filesystem::path& place : places_tried(edge.include)) {
        json.string(slashed(place));
    }
    json.end_array();
    json.end_object();
}

} // namespace

void write_deps_dot(const IncludeGraph& graph, Output& out) {
    out << "digraph includes {\n    node [shape=box];\n";
    for (const IncludeGraph::Node& node : graph.nodes()) {
        out << "    " << dot_quoted(node.name) << ";\n";
    }
    for (const IncludeGraph::Node& node : graph.nodes()) {
        for (const IncludeGraph::Edge& edge : node.edges) {
            const bool is_there = edge.target && edge.include.problem.empty();
            out << "    " << dot_quoted(node.name) << " -> "
                << dot_quoted(edge.target ? graph.nodes()[*edge.target].name : edge.include.name)
                << (is_there ? "" : " [color=red, style=dashed]") << ";\n";
        }
    }
    out << "}\n";
}

void write_deps_json(const IncludeGraph& graph, const std::vector<std::string>& documents, Output& out) {
    JsonWriter json(out);
    json.begin_object();
    json.key("documents");
    json.begin_array();
    for (const std::string& document : documents) {
        json.string(document);
    }
    json.end_array();
    json.key("files");
    json.begin_array();
    for (const IncludeGraph::Node& node : graph.nodes()) {
        json.begin_object();
        json.member("file", node.name);
        json.member("path", slashed(node.path));
        json.key("includes");
        json.begin_array();
        for (const IncludeGraph::Edge& edge : node.edges) {
            write_include(edge, json);
        }
        json.end_array();
        json.end_object();
    }
    json.end_array();
    json.end_object();
    json.finish();
}

} // namespace bkdoc
