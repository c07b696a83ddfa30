#include "document/access.h"
#include "verbs/edit/edit_run.h"
#include "verbs/find/find_run.h"
#include "verbs/verbs.h"

namespace bkdoc {

namespace {

/// Removes entries. What an entry contains goes with it, and is not counted.
EditOutcome remove_found(OpenedDocument& document, const bk_parser::Path& path) {
    EditOutcome outcome;
    bk_parser::PathSearch search(document.root(), path);
    while (search.next()) {
        const bk_parser::Visit& visit = search.visit();
        const bool is_new = outcome.is_new_place(document, visit.entry(), visit.value());
        outcome.counts[home_of(document, visit.entry())] += is_new ? 1 : 0;
        outcome.is_found = true;
        if (visit.value() == bk_parser::Visit::whole_entry) {
            search.skip_groups();
        }
    }
    bk_parser::remove_all(document.root(), path);
    return outcome;
}

/// Whether a path ends in "@" and a number.
bool names_value(std::string_view path) noexcept {
    const std::size_t last = path.find_last_not_of("0123456789");
    return last != std::string_view::npos && last + 1 < path.size() && path[last] == '@';
}

} // namespace

ExitCode run_rm(const Arguments& arguments, Streams& streams) {
    const auto& operands = arguments.operands();
    const bk_parser::Path path(operands[0]);
    if (!accept_path(path, "PATH", streams)) {
        return EXIT_UNREADABLE;
    }
    const bool is_of_values = names_value(operands[0]);
    const EditRequest request{{operands.begin() + 1, operands.end()},
                              operands[0],
                              is_of_values ? "value" : "entry",
                              is_of_values ? "values" : "entries",
                              "removed",
                              [&](OpenedDocument& document) { return remove_found(document, path); }};
    return run_edit(arguments, streams, request);
}

} // namespace bkdoc
