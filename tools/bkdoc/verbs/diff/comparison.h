#pragma once

#include "document/compare.h"
#include "input/options/open_options.h"
#include "output/output.h"
#include "verbs/diff/difference.h"
#include "verbs/exit_code.h"

#include <string>
#include <vector>

namespace bkdoc {

/// What two documents that were compared differ in. `change` of a difference is good for its kind and its positions alone: the
/// documents are gone.
struct Comparison {
    ExitCode trouble = EXIT_CLEAN; // of reading; then the documents were read only in part, or not at all
    std::vector<ToldDifference> differences;
};

/// Opens two documents, reports their problems aside and compares them as far as they could be read.
Comparison compare_files(const std::string& before, const std::string& after, const OpenOptions& open,
                         const bk_parser::CompareOptions& options, Streams& streams);

} // namespace bkdoc
