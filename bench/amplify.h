#pragma once

#include <cstddef>
#include <functional>
#include <vector>

namespace bench {

/// One input of a family.
struct Work {
    std::size_t bytes;                     // of the input; time and memory are compared with this size
    std::function<void()> run;             // does the same work each time
    std::function<void()> prepare = [] {}; // before each run, not measured
};

/// Inputs that differ only in their size.
struct Family {
    const char* name;
    unsigned int first_count;               // how often the smallest input repeats the family's part
    std::function<Work(unsigned int)> make; // makes an input with this many repetitions
};

const std::vector<Family>& text_families();
const std::vector<Family>& form_families();
const std::vector<Family>& tree_families();

} // namespace bench
