#pragma once

#include "bench/peers/report.h"

namespace bench {

/// Draws the results with gnuplot as SVG files in the folder `pictures`. Writes gnuplot's input files into the folder `scratch`.
bool plot(const std::vector<Raced>& raced, const std::string& scratch, const std::string& pictures);

} // namespace bench
