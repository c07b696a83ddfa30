#include "output/progress_line.h"

#include "output/display/text_display.h"

#include <utility>

namespace bkdoc {

namespace {

constexpr std::chrono::milliseconds patience{300};
constexpr std::size_t label_limit = 60; // characters

} // namespace

ProgressLine::ProgressLine(Output& out, std::string label)
    : out_(out), label_(std::move(label)), begin_(Clock::now()) {}

ProgressLine::~ProgressLine() {
    if (percent_ >= 0) {
        out_ << "\r\x1b[K";
        out_.flush();
    }
}

void ProgressLine::show(double done) {
    const int percent = static_cast<int>(done * 100);
    if (!out_.is_terminal() || percent == percent_ || Clock::now() - begin_ < patience) {
        return;
    }
    percent_ = percent;
    out_ << "\r" << shown(label_, label_limit) << " " << std::to_string(percent) << "%\x1b[K";
    out_.flush();
}

} // namespace bkdoc
