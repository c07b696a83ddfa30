#pragma once

#include "output/output.h"

#include <chrono>
#include <string>

namespace bkdoc {

/// A line on a terminal that says how far long work is, and is gone when the work is done. Work that is done at once
/// shows none, and neither does a stream that is no terminal.
class ProgressLine {
public:
    ProgressLine(Output& out, std::string label);
    ~ProgressLine();
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;

    /// From 0 to 1.
    void show(double done);

private:
    using Clock = std::chrono::steady_clock;

    Output& out_;
    std::string label_;
    Clock::time_point begin_;
    int percent_ = -1; // that is shown
};

} // namespace bkdoc
