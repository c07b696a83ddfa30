#include "verbs/find/find_run.h"
#include "verbs/verbs.h"

namespace bkdoc {

ExitCode run_get(const Arguments& arguments, Streams& streams) {
    const bk_parser::Path path(arguments.operands().front());
    if (!accept_path(path, "PATH", streams)) {
        return EXIT_UNREADABLE;
    }
    return find_in_documents(arguments, streams, [&path](const OpenedDocument& document, bool first_only) {
        std::vector<Match> matches;
        for (const bk_parser::Visit& visit : bk_parser::find_visits(document.root(), path)) {
            matches.push_back({&visit.entry(), visit.value()});
            if (first_only) {
                break;
            }
        }
        return matches;
    });
}

} // namespace bkdoc
