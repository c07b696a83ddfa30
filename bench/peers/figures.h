#pragma once

#include "bench/peers/report.h"

namespace bench {

/// Writes all rates and targets as a page in Markdown.
void write_figures(const std::vector<Raced>& raced, const std::string& path);

} // namespace bench
