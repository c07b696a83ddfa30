#include "verbs/edit/edit_run.h"
#include "verbs/edit/value_change.h"
#include "verbs/find/find_run.h"
#include "verbs/verbs.h"

namespace bkdoc {

namespace {

EditOutcome set_values(OpenedDocument& document, const bk_parser::Path& path, const ValueChange& change) {
    EditOutcome outcome;
    for (const bk_parser::Visit& visit : found_by(document, path)) {
        const std::string home = home_of(document, visit.entry());
        const bool is_new = outcome.is_new_place(document, visit.entry(), visit.value());
        const ValueChange::Result result = change.apply(visit.entry(), visit.value());
        if (!result.refusal.empty()) {
            outcome.refusal = told_place(document, visit.entry()) + ": " + result.refusal;
            return outcome;
        }
        outcome.is_found = true;
        outcome.counts[home] += is_new ? result.changed : 0;
    }
    return outcome;
}

} // namespace

ExitCode run_set(const Arguments& arguments, Streams& streams) {
    const auto& operands = arguments.operands();
    const bk_parser::Path path(operands[0]);
    if (!accept_path(path, "PATH", streams)) {
        return EXIT_UNREADABLE;
    }
    const ValueChange change(operands[1], wanted_type(arguments.value_or("--type", "")));
    if (!change.refusal().empty()) {
        complain(streams, change.refusal());
        return EXIT_UNREADABLE;
    }
    const EditRequest request{{operands.begin() + 2, operands.end()},
                              operands[0],
                              "value",
                              "values",
                              "set",
                              [&](OpenedDocument& document) { return set_values(document, path, change); }};
    return run_edit(arguments, streams, request);
}

} // namespace bkdoc
