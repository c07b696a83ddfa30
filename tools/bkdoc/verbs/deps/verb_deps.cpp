#include "input/files/file_list.h"
#include "input/opened_document.h"
#include "output/display/text_display.h"
#include "output/problems/report.h"
#include "platform/paths.h"
#include "verbs/deps/deps_output.h"
#include "verbs/verbs.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace bkdoc {

namespace {

std::vector<std::string> names_of(const IncludeGraph& graph, const std::vector<std::size_t>& documents) {
    std::vector<std::string> names;
    names.reserve(documents.size());
    for (const std::size_t document : documents) {
        names.push_back(graph.nodes()[document].name);
    }
    return names;
}

ExitCode write_reverse(const Arguments& arguments, const IncludeGraph& graph,
                       const std::vector<std::string>& documents, Streams& streams) {
    const std::string file = *arguments.value("--reverse");
    std::error_code error;
    const auto node = graph.find(std::filesystem::absolute(path_of(file), error));
    const bool is_included = node && !graph.sources()[*node].empty();
    if (!is_included && !std::filesystem::exists(path_of(file), error)) {
        complain(streams, shown(file, file_name_limit) +
                              ": no such file; deps --missing lists the includes that are not found");
        return EXIT_UNREADABLE;
    }
    if (arguments.has("--json")) {
        write_deps_json(node ? graph.leading_to(*node) : IncludeGraph(), documents, streams.out);
    } else if (is_included) {
        write_reverse_tree(graph, *node, streams.out);
    } else {
        streams.out << shown(file, file_name_limit) << " is included by none of the documents\n";
    }
    return is_included ? EXIT_CLEAN : EXIT_FAULTS;
}

/// Two options that ask for different answers; empty when there are none.
std::string contradiction(const Arguments& arguments) {
    constexpr std::pair<std::string_view, std::string_view> pairs[] = {
        {"--dot", "--json"}, {"--dot", "--reverse"}, {"--dot", "--missing"}, {"--missing", "--reverse"}};
    for (const auto& [one, other] : pairs) {
        if (arguments.has(one) && arguments.has(other)) {
            return std::string(one) + " does not go with " + std::string(other);
        }
    }
    return {};
}

ExitCode write_graph(const Arguments& arguments, const IncludeGraph& graph,
                     const std::vector<std::size_t>& documents, Streams& streams) {
    if (arguments.has("--reverse")) {
        return write_reverse(arguments, graph, names_of(graph, documents), streams);
    }
    if (arguments.has("--json")) {
        write_deps_json(arguments.has("--missing") ? graph.missing() : graph, names_of(graph, documents),
                        streams.out);
    } else if (arguments.has("--dot")) {
        write_deps_dot(graph, streams.out);
    } else if (arguments.has("--missing")) {
        write_missing(graph, streams.out);
    } else {
        write_deps_tree(graph, documents, streams.out);
    }
    return count_missing(graph) == 0 ? EXIT_CLEAN : EXIT_FAULTS;
}

} // namespace

// Reports only problems of includes; `check` reports the others.
ExitCode run_deps(const Arguments& arguments, Streams& streams) {
    if (const std::string reason = contradiction(arguments); !reason.empty()) {
        complain(streams, reason);
        return EXIT_UNREADABLE;
    }
    OpenOptions open;
    if (!take_opening(arguments, open, streams)) {
        return EXIT_UNREADABLE;
    }
    FileListOptions options;
    options.operands = arguments.operands();
    options.use_config = open.use_config;
    const FileList list = list_files(options);
    ExitCode worst = EXIT_CLEAN;
    for (const std::string& fault : list.faults) {
        complain(streams, fault);
        worst = EXIT_UNREADABLE;
    }
    IncludeGraph graph;
    std::vector<std::size_t> documents;
    for (const std::string& file : list.files) {
        const OpenedDocument document = open_document(file, open, streams);
        if (document.is_cancelled()) {
            return EXIT_INTERRUPTED;
        }
        if (const bk_parser::Problem* const refusal = document.refusal()) {
            complain(streams, tool_message(*refusal, {}));
            worst = EXIT_UNREADABLE;
            continue;
        }
        documents.push_back(graph.add(document.name(), document.document()));
    }
    return std::max(worst, write_graph(arguments, graph, documents, streams));
}

} // namespace bkdoc
