#pragma once

#include "verbs/check/checked_file.h"

#include <functional>
#include <string>
#include <vector>

namespace bkdoc {

/// Checks files on so many threads, and hands them over in the order of the list, each as soon as it and those before it
/// are done. An interrupt leaves out the rest. What a thread throws comes out of here. `tell` is given how far the file is that
/// comes next, from 0 to 1, where there is one thread.
void check_files(const std::vector<std::string>& files, const CheckRules& rules, std::size_t threads,
                 const std::function<void(CheckedFile&&)>& take, const std::function<void(double)>& tell);

} // namespace bkdoc
