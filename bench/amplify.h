#pragma once

#include <cstddef>
#include <functional>
#include <vector>

namespace bench {

/// One input of a family.
struct Work {
    std::size_t bytes;                     // of the input; what is made of it is measured against that
    std::function<void()> run;             // the same each time
    std::function<void()> prepare = [] {}; // before each run, not measured
};

/// Inputs that are alike but for their size.
struct Family {
    const char* name;
    unsigned int first_count;               // the smallest input has so many of what the family repeats
    std::function<Work(unsigned int)> make; // an input that has so many
};

const std::vector<Family>& text_families();
const std::vector<Family>& form_families();
const std::vector<Family>& tree_families();

} // namespace bench
