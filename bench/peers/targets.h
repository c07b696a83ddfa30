#pragma once

#include "bench/peers/report.h"

namespace bench {

/// A rate that bk_parser should reach, and the one that it reaches.
struct Target {
    std::string what;
    double reached;
    double wanted;
    bool is_reached;
};

/// The targets for one corpus. Leaves out targets whose peers are missing.
std::vector<Target> targets_over(const Corpus& corpus, const Results& results);

/// The target for the keystream of the cipher, which no peer has.
Target keystream_target();

void print_target(const Target& target);

} // namespace bench
