#include "output/display/text_display.h"
#include "output/json_writer.h"
#include "output/problems/report.h"
#include "tree/tree_compare.h"
#include "verbs/diff/diff_report.h"
#include "verbs/diff/folder_pairs.h"
#include "verbs/verbs.h"

#include <algorithm>
#include <utility>

namespace bkdoc {

namespace {

void write_side(std::string_view name, std::string_view text, std::size_t width, Output& out) {
    out << "  " << name << ":" << std::string(width - count_characters(name) + 1, ' ') << text << "\n";
}

void write_difference(const Difference& difference, std::string_view first, std::string_view second,
                      Output& out) {
    const std::size_t width = std::max(count_characters(first), count_characters(second));
    out << first << " and " << second << " differ at ";
    out.paint(Tone::strong, difference.path.empty() ? "the root" : difference.path);
    out << ", " << difference.what << ":\n";
    write_side(first, difference.first, width, out);
    write_side(second, difference.second, width, out);
}

void write_json(const std::optional<Difference>& difference, bool content, Output& out) {
    JsonWriter json(out);
    json.begin_object();
    json.member("same", !difference.has_value());
    json.member("compared", content ? "content" : "everything");
    if (difference) {
        json.key("difference");
        json.begin_object();
        json.member("path", difference->path);
        json.member("what", difference->what);
        json.member("first", difference->first);
        json.member("second", difference->second);
        json.end_object();
    }
    json.end_object();
    json.finish();
}

/// Why a document cannot be compared; empty when it can.
std::string why_not_compared(const OpenedDocument& document) {
    return document.lacks_includes() || document.is_damaged()
               ? shown(document.name(), file_name_limit) + ": not compared because part of it is missing"
               : std::string();
}

/// Runs the verb.
struct SameRun {
    const Arguments& arguments;
    Streams& streams;
    OpenOptions open;
    Likeness likeness;
    ReportedProblems reported = {};
    std::size_t compared = 0;

    std::string_view what() const { return likeness == Likeness::content ? "names and values" : "tree"; }

    /// Compares two documents, and writes their difference.
    ExitCode documents(const std::string& left, const std::string& right, bool tells_same) {
        const OpenedDocument first = open_document(left, open, streams);
        const OpenedDocument second = open_document(right, open, streams);
        const ExitCode first_code = report_aside(first, streams, reported);
        const ExitCode result = std::max(first_code, report_aside(second, streams, reported));
        if (!first.is_read() || !second.is_read()) {
            return result;
        }
        for (const OpenedDocument* document : {&first, &second}) {
            if (const std::string reason = why_not_compared(*document); !reason.empty()) {
                complain(streams, reason);
                return EXIT_UNREADABLE;
            }
        }
        ++compared;
        const std::optional<Difference> difference = find_difference(first.root(), second.root(), likeness);
        const std::string first_name = shown(first.name(), file_name_limit);
        const std::string second_name = shown(second.name(), file_name_limit);
        if (tells_same && arguments.has("--json")) {
            write_json(difference, likeness == Likeness::content, streams.out);
        } else if (difference) {
            write_difference(*difference, first_name, second_name, streams.out);
        } else if (tells_same) {
            streams.out << first_name << " and " << second_name << " hold the same " << what() << "\n";
        }
        return difference ? EXIT_FAULTS : EXIT_CLEAN;
    }

    ExitCode folders(const std::string& left, const std::string& right) {
        if (arguments.has("--json")) {
            complain(streams, "--json compares two files; diff --json compares folders");
            return EXIT_UNREADABLE;
        }
        const std::string names[] = {folder_name(left), folder_name(right)};
        FileListOptions list;
        list.use_config = open.use_config;
        const FolderPairs found = pair_folders(names[0], names[1], std::move(list));
        for (const std::string& fault : found.faults) {
            complain(streams, fault);
        }
        ExitCode worst = found.faults.empty() ? EXIT_CLEAN : EXIT_UNREADABLE;
        for (const FolderPair& pair : found.pairs) {
            if (pair.before.empty() || pair.after.empty()) {
                write_one_sided(names[pair.after.empty() ? 0 : 1], pair.name, streams.out);
                worst = std::max(worst, EXIT_FAULTS);
            } else {
                worst = std::max(worst, documents(pair.before, pair.after, false));
            }
            if (worst == EXIT_INTERRUPTED || streams.out.has_failed()) {
                return worst;
            }
        }
        if (worst == EXIT_CLEAN) {
            streams.out << shown(names[0], file_name_limit) << " and " << shown(names[1], file_name_limit)
                        << " hold the same " << (likeness == Likeness::content ? what() : "trees") << " ("
                        << counted(compared, "document", "documents") << ")\n";
        }
        return worst;
    }
};

} // namespace

ExitCode run_same(const Arguments& arguments, Streams& streams) {
    SameRun run{
        arguments, streams, {}, arguments.has("--content") ? Likeness::content : Likeness::everything};
    if (!take_opening(arguments, run.open, streams)) {
        return EXIT_UNREADABLE;
    }
    const std::string& first = arguments.operands().at(0);
    const std::string& second = arguments.operands().at(1);
    switch (operand_pair("same", first, second, streams)) {
    case OperandPair::folders:
        return run.folders(first, second);
    case OperandPair::files:
        return run.documents(first, second, true);
    case OperandPair::refused:
        break;
    }
    return EXIT_UNREADABLE;
}

} // namespace bkdoc
