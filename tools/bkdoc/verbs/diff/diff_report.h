#pragma once

#include "output/output.h"
#include "verbs/diff/difference.h"

#include <vector>

namespace bkdoc {

/// One line: "file:line path old -> new".
void write_difference(const ToldDifference& difference, Output& out);

/// The number of differences of each kind, by file and in all.
void write_statistics(const std::vector<ToldDifference>& differences, Output& out);

/// All differences as JSON.
void write_differences_json(const std::vector<ToldDifference>& differences, Output& out);

} // namespace bkdoc
