#include "input/files/file_list.h"
#include "input/opened_document.h"
#include "output/problems/report.h"
#include "platform/paths.h"
#include "verbs/deps/deps_output.h"
#include "verbs/verbs.h"

#include <algorithm>

namespace bkdoc {

namespace {

ExitCode write_reverse(const Arguments& arguments, const IncludeGraph& graph, Streams& streams) {
    const std::string file = *arguments.value("--reverse");
    std::error_code error;
    const auto node = graph.find(std::filesystem::absolute(path_of(file), error));
    if (!node || graph.sources()[*node].empty()) {
        streams.out << file << " is included by none of the documents\n";
        return EXIT_FAULTS;
    }
    write_reverse_tree(graph, *node, streams.out);
    return EXIT_CLEAN;
}

ExitCode write_graph(const Arguments& arguments, const IncludeGraph& graph,
                     const std::vector<std::size_t>& documents, Streams& streams) {
    if (arguments.has("--reverse")) {
        return write_reverse(arguments, graph, streams);
    }
    if (arguments.has("--json")) {
        write_deps_json(graph, documents, streams.out);
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
