#include "verbs/diff/comparison.h"

#include <algorithm>

namespace bkdoc {

Comparison compare_files(const std::string& before, const std::string& after, const OpenOptions& open,
                         const bk_parser::CompareOptions& options, Streams& streams,
                         ReportedProblems& reported) {
    Comparison result;
    const OpenedDocument old = open_document(before, open, streams);
    const OpenedDocument now = open_document(after, open, streams);
    result.trouble = report_aside(old, streams, reported);
    result.trouble = std::max(result.trouble, report_aside(now, streams, reported));
    if (!old.is_read() || !now.is_read()) {
        return result;
    }
    const auto changes = bk_parser::compare_trees(old.root(), now.root(), options);
    if (!changes.empty()) {
        const DifferenceTeller teller(old, now);
        for (const bk_parser::TreeChange& change : changes) {
            result.differences.push_back(teller.tell(change));
            result.differences.back().change.before = nullptr;
            result.differences.back().change.after = nullptr;
        }
    }
    return result;
}

} // namespace bkdoc
