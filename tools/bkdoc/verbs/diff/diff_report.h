#pragma once

#include "output/output.h"
#include "verbs/diff/difference.h"

#include <string>
#include <vector>

namespace bkdoc {

/// Documents that only one of two folders has, by their paths in it.
struct OneSided {
    std::vector<std::string> before;
    std::vector<std::string> after;

    bool empty() const noexcept { return before.empty() && after.empty(); }
};

/// One line: "file:line path old -> new".
void write_difference(const ToldDifference& difference, Output& out);

/// The number of differences of each kind, by file and in all.
void write_statistics(const std::vector<ToldDifference>& differences, Output& out);

/// All differences as JSON. `one_sided` is null when no folders are compared.
void write_differences_json(const std::vector<ToldDifference>& differences, const OneSided* one_sided,
                            Output& out);

/// One line: "only in folder: name".
void write_one_sided(const std::string& folder, const std::string& name, Output& out);

} // namespace bkdoc
