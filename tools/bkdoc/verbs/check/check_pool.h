#pragma once

#include "verbs/check/checked_file.h"

#include <functional>
#include <string>
#include <vector>

namespace bkdoc {

/// Checks files on this many threads and hands the results to `take` in the order of the list, each as soon as it and those
/// before it are done. An interrupt skips the remaining files. Rethrows what a thread throws. With one thread, `tell` gets the
/// progress within the current file, from 0 to 1.
void check_files(const std::vector<std::string>& files, const CheckRules& rules, std::size_t threads,
                 const std::function<void(CheckedFile&&)>& take, const std::function<void(double)>& tell);

} // namespace bkdoc
