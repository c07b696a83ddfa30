#pragma once

#include "verbs/diff/comparison.h"
#include "verbs/diff/diff_report.h"
#include "verbs/diff/folder_pairs.h"

#include <set>
#include <string>
#include <vector>

namespace bkdoc {

/// The differences of the documents of two folders.
struct FolderDiff {
    /// The report of one name.
    struct Row {
        FolderPair pair;
        std::vector<ToldDifference> differences; // empty when only one folder has the name
    };

    ExitCode trouble = EXIT_CLEAN;
    std::vector<Row> rows; // names with differences
    OneSided one_sided;
    std::size_t compared = 0; // documents that both folders have
};

/// Compares each pair. Reports a difference in an included file once: for that file's own pair, or else for the first document
/// that includes it.
FolderDiff compare_folders(const std::vector<FolderPair>& pairs, const OpenOptions& open,
                           const bk_parser::CompareOptions& options, Streams& streams);

} // namespace bkdoc
