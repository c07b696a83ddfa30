#include "document/access.h"
#include "output/display/text_display.h"
#include "verbs/edit/edit_run.h"
#include "verbs/edit/entry_name.h"
#include "verbs/find/find_run.h"
#include "verbs/verbs.h"

#include <set>

namespace bkdoc {

namespace {

constexpr std::size_t name_limit = 200; // characters shown

/// Renames the entries that a path finds and, if asked for, the strings that contain an old name.
class Renaming {
public:
    Renaming(const bk_parser::Path& path, const std::string& name, bool with_references)
        : path_(path), name_(name), with_references_(with_references) {}

    EditOutcome run(OpenedDocument& document) const {
        EditOutcome outcome;
        const auto found = found_by(document, path_);
        std::set<std::string, std::less<>> old_names;
        for (const bk_parser::Visit& visit : found) {
            old_names.emplace(visit.entry().get_name().get_view());
        }
        old_names.erase(name_);
        if (with_references_) {
            rename_references(document, old_names, outcome);
        }
        for (const bk_parser::Visit& visit : found) {
            rename_entry(document, visit.entry(), outcome);
            if (!outcome.refusal.empty()) {
                break;
            }
        }
        return outcome;
    }

private:
    void rename_entry(const OpenedDocument& document, ParserEntry& entry, EditOutcome& outcome) const {
        const bool is_new = entry.get_name().get_view() != name_ &&
                            outcome.is_new_place(document, entry, bk_parser::Visit::whole_entry);
        if (!bk_parser::rename(entry, name_)) {
            outcome.refusal = told_place(document, entry) + ": cannot be called '" +
                              shown(name_, name_limit) + "'; " + why_no_name(name_);
            return;
        }
        outcome.is_found = true;
        outcome.counts[home_of(document, entry)] += is_new ? 1 : 0;
    }

    void rename_references(OpenedDocument& document, const std::set<std::string, std::less<>>& old_names,
                           EditOutcome& outcome) const {
        for (const bk_parser::Visit& visit : bk_parser::walk(document.root())) {
            ParserEntry& entry = visit.entry();
            for (unsigned int i = 0; i < entry.get_value_count(); ++i) {
                if (!entry.is_value_string(i) || !old_names.contains(entry.get_string(i).get_view())) {
                    continue;
                }
                if (!outcome.is_new_place(document, entry, i)) {
                    bk_parser::set(entry, i, name_);
                    continue;
                }
                outcome.notes += told_place(document, entry) + "@" + std::to_string(i) + ": " +
                                 shown_quoted(entry.get_string(i).get_view(), name_limit) + " -> " +
                                 shown_quoted(name_, name_limit) + "\n";
                ++outcome.counts[home_of(document, entry)];
                bk_parser::set(entry, i, name_);
            }
        }
    }

    const bk_parser::Path& path_;
    const std::string& name_;
    bool with_references_;
};

} // namespace

ExitCode run_rename(const Arguments& arguments, Streams& streams) {
    const auto& operands = arguments.operands();
    const bk_parser::Path path(operands[0]);
    if (!accept_path(path, "PATH", streams)) {
        return EXIT_UNREADABLE;
    }
    warn_of_name(operands[1], streams);
    const Renaming renaming(path, operands[1], arguments.has("--refs"));
    const EditRequest request{{operands.begin() + 2, operands.end()},
                              operands[0],
                              "name",
                              "names",
                              "changed",
                              [&](OpenedDocument& document) { return renaming.run(document); }};
    return run_edit(arguments, streams, request);
}

} // namespace bkdoc
