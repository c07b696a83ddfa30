#include "document/access.h"
#include "verbs/edit/edit_run.h"
#include "verbs/edit/entry_name.h"
#include "verbs/find/find_run.h"
#include "verbs/verbs.h"

namespace bkdoc {

namespace {

/// Warns when TO is the path of a group: whoever knows `mv` for files expects the entry to move into the group.
void warn_of_group(const OpenedDocument& document, const ParserEntry& entry, const bk_parser::Path& to,
                   Streams& streams) {
    const std::string name(entry.get_name().get_view());
    for (const bk_parser::Visit& there : found_by(document, to)) {
        const bool holds_group = there.entry().get_value_count() != 0 &&
                                 there.entry().is_value_group(there.entry().get_value_count() - 1);
        if (holds_group && &there.entry() != &entry && there.entry().get_name().get_view() != name) {
            complain(streams, "warning: " + told_place(document, there.entry()) +
                                  ": this group is there already, and now there are two; to move the entry "
                                  "into it, write " +
                                  std::string(to.text()) + "/" + name);
            return;
        }
    }
}

EditOutcome move_found(OpenedDocument& document, const bk_parser::Path& from, const bk_parser::Path& to,
                       Streams& streams) {
    EditOutcome outcome;
    const auto found = found_by(document, from);
    if (found.empty()) {
        return outcome;
    }
    const ParserEntry& entry = found.front().entry();
    if (found.size() > 1) {
        outcome.refusal = document.name() + ": " + std::string(from.text()) + " finds " +
                          std::to_string(found.size()) + " entries; name one of them, as in " +
                          bk_parser::path_of(document.root(), entry);
        return outcome;
    }
    warn_of_group(document, entry, to, streams);
    const std::string place = told_place(document, entry);
    outcome.is_found = true;
    ++outcome.counts[home_of(document, entry)];
    if (!bk_parser::move(document.root(), from, to)) {
        outcome.refusal = place + ": cannot move to " + std::string(to.text()) +
                          "; TO must be a plain name in a group outside the entry";
    }
    return outcome;
}

} // namespace

ExitCode run_mv(const Arguments& arguments, Streams& streams) {
    const auto& operands = arguments.operands();
    const bk_parser::Path from(operands[0]);
    const bk_parser::Path to(operands[1]);
    if (!accept_path(from, "PATH", streams) || !accept_path(to, "PATH", streams)) {
        return EXIT_UNREADABLE;
    }
    warn_of_name(last_name(operands[1]), streams);
    const EditRequest request{
        {operands[2]}, operands[0],
        "entry",       "entries",
        "moved",       [&](OpenedDocument& document) { return move_found(document, from, to, streams); }};
    return run_edit(arguments, streams, request);
}

} // namespace bkdoc
