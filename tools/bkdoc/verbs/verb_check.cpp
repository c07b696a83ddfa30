#include "output/report.h"
#include "verbs/verbs.h"

#include <algorithm>

namespace bkdoc {

ExitCode run_check(const Arguments& arguments, Streams& streams) {
    OpenOptions open;
    if (!take_opening(arguments, open, streams)) {
        return EXIT_UNREADABLE;
    }
    ExitCode worst = EXIT_CLEAN;
    for (const std::string& operand : arguments.operands()) {
        const OpenedDocument document = open_document(operand, open, streams);
        if (const bk_parser::Problem* const refusal = document.refusal()) {
            complain(streams, tool_message(*refusal, {}));
        }
        report(document, streams.out);
        worst = std::max(worst, document.exit_code());
    }
    return worst;
}

} // namespace bkdoc
