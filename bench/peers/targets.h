#pragma once

#include "bench/peers/report.h"

namespace bench {

/// Something that bk_parser is to reach, and what it reaches.
struct Target {
    std::string what;
    double reached;
    double wanted;
    bool is_reached;
};

/// Over one corpus. A target whose peer is missing is left out.
std::vector<Target> targets_over(const Corpus& corpus, const Results& results);

/// The keystream of the cipher, which no peer has.
Target keystream_target();

void print_target(const Target& target);

} // namespace bench
