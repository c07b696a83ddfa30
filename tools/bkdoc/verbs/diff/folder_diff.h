#pragma once

#include "verbs/diff/comparison.h"
#include "verbs/diff/diff_report.h"
#include "verbs/diff/folder_pairs.h"

#include <set>
#include <string>
#include <vector>

namespace bkdoc {

/// What the documents of two folders differ in.
struct FolderDiff {
    /// What is to be told of one name.
    struct Row {
        FolderPair pair;
        std::vector<ToldDifference> differences; // none where only one folder has the name
    };

    ExitCode trouble = EXIT_CLEAN;
    std::vector<Row> rows; // of names that differ
    OneSided one_sided;
    std::size_t compared = 0; // documents that both folders have
};

/// Compares each pair. A difference in a file that several documents include is told once: of that file's own pair where there is one,
/// else of the first document that includes it.
FolderDiff compare_folders(const std::vector<FolderPair>& pairs, const OpenOptions& open,
                           const bk_parser::CompareOptions& options, Streams& streams);

} // namespace bkdoc
