#pragma once

#include "output/output.h"

#include <chrono>
#include <string>

namespace bkdoc {

/// Shows the progress of long work in one line of a terminal, and clears the line at the end. Shows nothing for short work, or
/// when the stream is not a terminal.
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
    int percent_ = -1; // shown last
};

} // namespace bkdoc
