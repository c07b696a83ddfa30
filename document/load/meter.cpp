#include "document/load/meter_impl.h"

#include <algorithm>

namespace bk_parser {

void Meter::begin() {
    if (has_callback()) {
        call(0);
    }
}

void Meter::finish() {
    if (has_callback()) {
        call(1);
    }
}

void Meter::start(const Range& range, std::size_t total, std::size_t done) noexcept {
    range_ = range;
    total_ = total;
    done_ = done;
    set_due();
}

void Meter::stop(std::size_t done) noexcept {
    work_ += done - std::min(done_, done);
    done_ = done;
    due_ = never;
}

void Meter::tell(std::size_t done) {
    work_ += done - std::min(done_, done);
    done_ = done;
    const double fraction =
        total_ == 0 ? 1 : std::min(1.0, static_cast<double>(done) / static_cast<double>(total_));
    const double value = range_.at(fraction);
    if (value >= next_value_ || work_ >= next_work_) {
        call(std::max(value, value_));
    }
    set_due();
}

void Meter::call(double value) {
    value_ = value;
    next_value_ = value + step;
    next_work_ = work_ + std::max(least_work, work_ / work_share);
    if (!progress_(value)) {
        throw LoadCancelled();
    }
}

/// The bytes by which the value has risen by a step, or enough work was done.
void Meter::set_due() noexcept {
    if (!has_callback()) {
        due_ = never;
        return;
    }
    due_ = done_ + (next_work_ - std::min(work_, next_work_));
    const double width = range_.end - range_.begin;
    if (width > 0) {
        const double until = (next_value_ - range_.begin) / width * static_cast<double>(total_);
        if (until < static_cast<double>(due_)) {
            due_ = std::max(done_ + 1, static_cast<std::size_t>(std::max(until, 0.0)));
        }
    }
}

} // namespace bk_parser
