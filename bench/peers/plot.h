#pragma once

#include "bench/peers/report.h"

namespace bench {

/// Draws the results into SVG files in the folder `pictures`, by gnuplot; `scratch` takes what that reads.
bool plot(const std::vector<Raced>& raced, const std::string& scratch, const std::string& pictures);

} // namespace bench
