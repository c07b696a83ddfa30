#include "input/files/input.h"
#include "output/display/text_display.h"
#include "platform/paths.h"
#include "verbs/deps/deps_output.h"

#include <algorithm>

namespace bkdoc {

namespace {

/// Why the search skipped a place; empty when nothing is there.
std::string why_not_taken(const std::filesystem::path& place) {
    std::error_code failure;
    switch (std::filesystem::status(place, failure).type()) {
    case std::filesystem::file_type::not_found:
        return {};
    case std::filesystem::file_type::directory:
    case std::filesystem::file_type::none:
    case std::filesystem::file_type::unknown:
        return " (" + why_unread(text_of(place)) + ")";
    default: // why_unread would wait for whoever writes into a pipe
        return " (is not a regular file)";
    }
}

std::string why_missing(const bk_parser::Include& include) {
    if (include.problem == "include-not-found") {
        std::string tried;
        for (const std::filesystem::path& place : places_tried(include)) {
            tried +=
                (tried.empty() ? "" : ", ") + shown(slashed(place), file_name_limit) + why_not_taken(place);
        }
        return "not found; tried " + tried;
    }
    return include.problem == "include-circle" ? "includes itself" : include.problem;
}

/// A row of the drawing: a file or a directive.
struct Row {
    std::string name;
    std::string remark;
    Tone tone = Tone::dim;           // of the remark
    std::optional<std::size_t> node; // its rows follow below
    unsigned int line = 0;
};

/// Draws the rows with an explicit stack. The rows below a node are drawn once.
class RowTree {
public:
    template <class Below>
    static void draw(const IncludeGraph& graph, std::size_t top, Below below, Output& out) {
        std::vector<bool> is_drawn(graph.nodes().size());
        std::vector<Level> levels;
        levels.push_back({below(top), 0});
        is_drawn[top] = true;
        while (!levels.empty() && !out.has_failed()) {
            Level& level = levels.back();
            if (level.next == level.rows.size()) {
                levels.pop_back();
                continue;
            }
            const Row& row = level.rows[level.next++];
            std::vector<Row> rows = row.node ? below(*row.node) : std::vector<Row>();
            const bool is_again = row.node && is_drawn[*row.node] && !rows.empty();
            write_branch(levels, out);
            write_row(row, is_again, out);
            if (row.node && !is_again && !rows.empty()) {
                is_drawn[*row.node] = true;
                levels.push_back({std::move(rows), 0});
            }
        }
    }

private:
    struct Level {
        std::vector<Row> rows;
        std::size_t next;
    };

    static void write_branch(const std::vector<Level>& levels, Output& out) {
        std::string branch;
        const std::size_t open = levels.size() - 1;
        for (std::size_t i = 0; i < std::min(open, indented_levels); ++i) {
            branch += levels[i].next == levels[i].rows.size() ? "    " : "\xE2\x94\x82   ";
        }
        if (open > indented_levels) {
            branch += std::string(ellipsis) + std::to_string(levels.size()) + " ";
        }
        branch += levels.back().next == levels.back().rows.size() ? "\xE2\x94\x94\xE2\x94\x80\xE2\x94\x80 "
                                                                  : "\xE2\x94\x9C\xE2\x94\x80\xE2\x94\x80 ";
        out.paint(Tone::dim, branch);
    }

    static void write_row(const Row& row, bool is_again, Output& out) {
        out.paint(Tone::name, shown(row.name, file_name_limit));
        out.paint(Tone::dim, "  line " + std::to_string(row.line));
        if (!row.remark.empty()) {
            out << "  ";
            out.paint(row.tone, row.remark);
        }
        if (is_again) {
            out.paint(Tone::dim, "  (drawn above)");
        }
        out << "\n";
    }
};

} // namespace

void write_deps_tree(const IncludeGraph& graph, const std::vector<std::size_t>& documents, Output& out) {
    const auto below = [&graph](std::size_t node) {
        std::vector<Row> rows;
        for (const IncludeGraph::Edge& edge : graph.nodes()[node].edges) {
            Row row;
            row.name = edge.target ? graph.nodes()[*edge.target].name : edge.include.name;
            row.line = edge.include.line;
            row.node = edge.target;
            if (!edge.include.problem.empty()) {
                row.remark = why_missing(edge.include);
                row.tone = Tone::error;
            }
            rows.push_back(std::move(row));
        }
        return rows;
    };
    for (const std::size_t document : documents) {
        out.paint(Tone::strong, shown(graph.nodes()[document].name, file_name_limit));
        out << "\n";
        RowTree::draw(graph, document, below, out);
    }
}

void write_reverse_tree(const IncludeGraph& graph, std::size_t node, Output& out) {
    const auto sources = graph.sources();
    out.paint(Tone::strong, shown(graph.nodes()[node].name, file_name_limit));
    out << "\n";
    const auto below = [&](std::size_t included) {
        std::vector<Row> rows;
        for (const IncludeGraph::Source& source : sources[included]) {
            Row row;
            row.name = graph.nodes()[source.node].name;
            row.line = source.include->line;
            row.node = source.node;
            rows.push_back(std::move(row));
        }
        return rows;
    };
    RowTree::draw(graph, node, below, out);
}

void write_missing(const IncludeGraph& graph, Output& out) {
    for (const IncludeGraph::Node& node : graph.nodes()) {
        for (const IncludeGraph::Edge& edge : node.edges) {
            if (!edge.include.problem.empty()) {
                out.paint(Tone::strong, shown(node.name, file_name_limit) + ":" +
                                            std::to_string(edge.include.line) + ":" +
                                            std::to_string(edge.include.column) + ":");
                out << " " << shown(edge.include.name, file_name_limit) << ": " << why_missing(edge.include)
                    << "\n";
            }
        }
    }
}

std::size_t count_missing(const IncludeGraph& graph) {
    std::size_t count = 0;
    for (const IncludeGraph::Node& node : graph.nodes()) {
        count += static_cast<std::size_t>(
            std::count_if(node.edges.begin(), node.edges.end(),
                          [](const IncludeGraph::Edge& edge) { return !edge.include.problem.empty(); }));
    }
    return count;
}

} // namespace bkdoc
