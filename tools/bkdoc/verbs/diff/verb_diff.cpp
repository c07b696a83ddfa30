#include "output/display/text_display.h"
#include "platform/paths.h"
#include "verbs/diff/comparison.h"
#include "verbs/diff/diff_report.h"
#include "verbs/diff/folder_diff.h"
#include "verbs/diff/folder_pairs.h"
#include "verbs/verbs.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <utility>

namespace bkdoc {

namespace {

bool take_compare_options(const Arguments& arguments, bk_parser::CompareOptions& options, Streams& streams) {
    options.ignore_order = arguments.has("--ignore-order");
    const auto tolerance = arguments.value("--tolerance");
    if (!tolerance) {
        return true;
    }
    const char* const end = tolerance->data() + tolerance->size();
    const auto [rest, error] = std::from_chars(tolerance->data(), end, options.tolerance);
    const bool is_number = error == std::errc() && rest == end && options.tolerance >= 0;
    if (!is_number) {
        complain(streams, "--tolerance needs a number of 0 or more, not '" + *tolerance + "'");
    }
    return is_number;
}

std::vector<ToldDifference> joined(const std::vector<FolderDiff::Row>& rows) {
    std::vector<ToldDifference> all;
    for (const FolderDiff::Row& row : rows) {
        all.insert(all.end(), row.differences.begin(), row.differences.end());
    }
    return all;
}

void write_rows(const FolderDiff& diff, const std::vector<std::string>& folders, bool whole, Output& out) {
    for (const FolderDiff::Row& row : diff.rows) {
        if (row.pair.before.empty() || row.pair.after.empty()) {
            write_one_sided(folders[row.pair.after.empty() ? 0 : 1], row.pair.name, out);
        }
        for (std::size_t i = 0; whole && i < row.differences.size(); ++i) {
            write_difference(row.differences[i], out);
        }
    }
}

/// "12 documents compared, 2 only in old, 1 only in new".
std::string sum_of(const FolderDiff& diff, const std::vector<std::string>& folders) {
    std::string text = counted(diff.compared, "document", "documents") + " compared";
    const std::size_t counts[] = {diff.one_sided.before.size(), diff.one_sided.after.size()};
    for (std::size_t i = 0; i < std::size(counts); ++i) {
        if (counts[i] != 0) {
            text += ", " + grouped(counts[i]) + " only in " + shown(folders[i], file_name_limit);
        }
    }
    return text + "\n";
}

ExitCode exit_code(ExitCode trouble, bool is_same) {
    return trouble == EXIT_INTERRUPTED ? trouble
           : trouble != EXIT_CLEAN     ? EXIT_UNREADABLE
           : is_same                   ? EXIT_CLEAN
                                       : EXIT_FAULTS;
}

/// Runs the verb.
struct DiffRun {
    const Arguments& arguments;
    Streams& streams;
    OpenOptions open;
    bk_parser::CompareOptions options;

    ExitCode files() {
        const auto& operands = arguments.operands();
        ReportedProblems reported;
        const Comparison comparison =
            compare_files(operands.at(0), operands.at(1), open, options, streams, reported);
        const auto& differences = comparison.differences;
        if (comparison.trouble > EXIT_FAULTS) {
            return comparison.trouble;
        }
        if (arguments.has("--json")) {
            write_differences_json(differences, nullptr, streams.out);
        } else if (arguments.has("--stat")) {
            write_statistics(differences, streams.out);
        } else {
            for (const ToldDifference& difference : differences) {
                write_difference(difference, streams.out);
            }
        }
        return exit_code(comparison.trouble, differences.empty());
    }

    ExitCode folders() {
        const std::vector<std::string> operands = {folder_name(arguments.operands().at(0)),
                                                   folder_name(arguments.operands().at(1))};
        FileListOptions list;
        list.use_config = open.use_config;
        list.extensions = arguments.values("--ext");
        const FolderPairs pairs = pair_folders(operands.at(0), operands.at(1), std::move(list));
        for (const std::string& fault : pairs.faults) {
            complain(streams, fault);
        }
        FolderDiff diff = compare_folders(pairs.pairs, open, options, streams);
        if (diff.trouble == EXIT_INTERRUPTED) {
            return EXIT_INTERRUPTED;
        }
        if (arguments.has("--json")) {
            write_differences_json(joined(diff.rows), &diff.one_sided, streams.out);
        } else {
            const bool is_summed = arguments.has("--stat");
            write_rows(diff, operands, !is_summed, streams.out);
            if (is_summed) {
                write_statistics(joined(diff.rows), streams.out);
                streams.out << sum_of(diff, operands);
            }
        }
        return exit_code(pairs.faults.empty() ? diff.trouble : EXIT_UNREADABLE, diff.rows.empty());
    }
};

} // namespace

ExitCode run_diff(const Arguments& arguments, Streams& streams) {
    DiffRun run{arguments, streams, {}, {}};
    if (!take_compare_options(arguments, run.options, streams) ||
        !take_opening(arguments, run.open, streams)) {
        return EXIT_UNREADABLE;
    }
    run.open.keep_sources = true;
    const std::string& before = arguments.operands().at(0);
    const std::string& after = arguments.operands().at(1);
    switch (operand_pair("diff", before, after, streams)) {
    case OperandPair::folders:
        return run.folders();
    case OperandPair::files:
        return run.files();
    case OperandPair::refused:
        break;
    }
    return EXIT_UNREADABLE;
}

} // namespace bkdoc
