#pragma once

#include "output/output.h"
#include "verbs/diff/difference.h"

#include <vector>

namespace bkdoc {

/// One line: "file:line path old -> new".
void write_difference(const ToldDifference& difference, Output& out);

/// How many differences of each kind each file has, and how many there are.
void write_statistics(const std::vector<ToldDifference>& differences, Output& out);

/// All of them as JSON.
void write_differences_json(const std::vector<ToldDifference>& differences, Output& out);

} // namespace bkdoc
