#pragma once

#include "document/compare.h"
#include "input/options/open_options.h"
#include "output/output.h"
#include "output/problems/report.h"
#include "verbs/diff/difference.h"
#include "verbs/exit_code.h"

#include <string>
#include <vector>

namespace bkdoc {

/// The differences of two documents. Use only the kind and positions of a difference's `change`: its pointers refer to deleted
/// documents.
struct Comparison {
    /// Anything but EXIT_CLEAN means that the documents were read only in part, or not at all.
    ExitCode trouble = EXIT_CLEAN;
    std::vector<ToldDifference> differences;
};

/// Opens two documents, writes their problems to the error stream unless they were reported before, and compares them as far as they could be read.
Comparison compare_files(const std::string& before, const std::string& after, const OpenOptions& open,
                         const bk_parser::CompareOptions& options, Streams& streams,
                         ReportedProblems& reported);

} // namespace bkdoc
