#include "verbs/each_document.h"

#include "input/files/file_list.h"
#include "output/problems/report.h"
#include "verbs/selection.h"

#include <algorithm>

namespace bkdoc {

ExitCode for_each_document(const Arguments& arguments, Streams& streams,
                           const std::function<ExitCode(OpenedDocument&)>& visit) {
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
    ReportedProblems reported;
    for (const std::string& operand : list.files) {
        OpenedDocument document = open_document(operand, open, streams);
        worst = std::max(worst, report_aside(document, streams, reported));
        if (document.is_read()) {
            worst = std::max(worst, visit(document));
        }
        if (document.is_cancelled() || streams.out.has_failed()) {
            break;
        }
    }
    return worst;
}

ExitCode for_each_selection(const Arguments& arguments, Streams& streams,
                            const std::function<ExitCode(const OpenedDocument&, const ParserGroup&)>& visit) {
    Selection selection(arguments, streams);
    if (selection.is_refused()) {
        return EXIT_UNREADABLE;
    }
    return for_each_document(arguments, streams, [&](const OpenedDocument& document) {
        const ParserGroup* const group = selection.of(document, streams);
        if (group == nullptr) {
            return EXIT_FAULTS;
        }
        return visit(document, *group);
    });
}

} // namespace bkdoc
