#include "document/compare.h"
#include "output/problems/report.h"
#include "verbs/diff/diff_report.h"
#include "verbs/diff/difference.h"
#include "verbs/verbs.h"

#include <algorithm>
#include <charconv>

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

void write(const std::vector<ToldDifference>& differences, const Arguments& arguments, Output& out) {
    if (arguments.has("--json")) {
        write_differences_json(differences, out);
    } else if (arguments.has("--stat")) {
        write_statistics(differences, out);
    } else {
        for (const ToldDifference& difference : differences) {
            write_difference(difference, out);
        }
    }
}

} // namespace

ExitCode run_diff(const Arguments& arguments, Streams& streams) {
    OpenOptions open;
    bk_parser::CompareOptions options;
    if (!take_compare_options(arguments, options, streams) || !take_opening(arguments, open, streams)) {
        return EXIT_UNREADABLE;
    }
    open.keep_sources = true;
    const OpenedDocument before = open_document(arguments.operands().at(0), open, streams);
    const OpenedDocument after = open_document(arguments.operands().at(1), open, streams);
    const ExitCode trouble = std::max(report_aside(before, streams), report_aside(after, streams));
    if (!before.is_read() || !after.is_read()) {
        return trouble;
    }
    std::vector<ToldDifference> differences;
    const auto changes = bk_parser::compare_trees(before.root(), after.root(), options);
    if (!changes.empty()) {
        const DifferenceTeller teller(before, after);
        for (const bk_parser::TreeChange& change : changes) {
            differences.push_back(teller.tell(change));
        }
    }
    write(differences, arguments, streams.out);
    return trouble != EXIT_CLEAN ? EXIT_UNREADABLE : differences.empty() ? EXIT_CLEAN : EXIT_FAULTS;
}

} // namespace bkdoc
