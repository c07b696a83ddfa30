#include "verbs/find/find_run.h"

#include "input/files/file_list.h"
#include "output/problems/report.h"
#include "platform/interruption.h"

#include <algorithm>

namespace bkdoc {

bool accept_path(const bk_parser::Path& path, std::string_view what, Streams& streams) {
    const bk_parser::PathError* const error = path.error();
    if (error != nullptr) {
        streams.out.flush();
        streams.err << "bkdoc: " << what << ": " << bk_parser::to_text(*error, path.text());
    }
    return error == nullptr;
}

void note_errors(const OpenedDocument& document, Streams& streams) {
    if (document.is_read() && document.has_errors()) {
        complain(streams,
                 document.name() + ": has errors and may be read only in part; bkdoc check shows them");
    }
}

ExitCode
find_in_documents(const Arguments& arguments, Streams& streams,
                  const std::function<std::vector<Match>(const OpenedDocument&, bool first_only)>& search) {
    OpenOptions open;
    if (!take_opening(arguments, open, streams)) {
        return EXIT_UNREADABLE;
    }
    open.keep_sources = true;
    FileListOptions options;
    options.use_config = open.use_config;
    options.operands.assign(arguments.operands().begin() + 1, arguments.operands().end());
    const FileList list = list_files(options);
    for (const std::string& fault : list.faults) {
        complain(streams, fault);
    }
    ExitCode worst = list.faults.empty() ? EXIT_CLEAN : EXIT_UNREADABLE;
    bool is_found = false;
    MatchWriter writer(MatchWriter::form_of(arguments), list.files.size() > 1, streams.out);
    writer.begin();
    for (const std::string& file : list.files) {
        const OpenedDocument document = open_document(file, open, streams);
        if (!document.is_read()) {
            worst = std::max(worst, report_aside(document, streams));
        } else {
            note_errors(document, streams);
            const std::vector<Match> matches = search(document, writer.wants_first_only());
            is_found = is_found || !matches.empty();
            writer.document(document, matches);
        }
        if (document.is_cancelled() || streams.out.has_failed()) {
            break;
        }
    }
    writer.end();
    return worst != EXIT_CLEAN || is_found ? worst : EXIT_FAULTS;
}

} // namespace bkdoc
