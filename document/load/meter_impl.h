#pragma once

#include "core/reports/core_pace_impl.h"

#include <cstddef>
#include <functional>

namespace bk_parser {

/// Thrown inside a load when the progress callback returned false.
struct LoadCancelled {};

/// Calls the progress callback about a hundred times in a load. The load is divided into ranges of 0 to 1. The code that works
/// through a range reports how far it is and how many bytes that took. Throws LoadCancelled when the callback returns
/// false. What the callback throws passes through.
class Meter final : public bk::Pace {
public:
    /// A part of the load.
    struct Range {
        double begin = 0;
        double end = 1;

        constexpr double at(double fraction) const noexcept { return begin + (end - begin) * fraction; }
        constexpr Range part(double from, double to) const noexcept { return {at(from), at(to)}; }
    };

    /// The callback may be empty, and is kept by the caller.
    explicit Meter(const std::function<bool(double)>& progress) noexcept : progress_(progress) {}

    /// The load begins, or is done.
    void begin();
    void finish();

    /// Starts a range of `total` bytes, of which `done` are done already.
    void start(const Range& range, std::size_t total, std::size_t done = 0) noexcept;
    /// Ends the range, with this much of it done.
    void stop(std::size_t done) noexcept;

private:
    static constexpr double step = 0.01;
    // After so many bytes, or this share of all bytes so far, a call is due even if the value has not risen by a step.
    static constexpr std::size_t least_work = std::size_t{1} << 20;
    static constexpr std::size_t work_share = 16;

    void tell(std::size_t done) override;
    void call(double value);
    bool has_callback() const noexcept { return static_cast<bool>(progress_); }
    void set_due() noexcept;

    const std::function<bool(double)>& progress_;
    Range range_;
    std::size_t total_ = 0;
    std::size_t done_ = 0;               // of the range, as far as it is counted in the work
    std::size_t work_ = 0;               // bytes, of all ranges
    std::size_t next_work_ = least_work; // a call is due when so much was done
    double next_value_ = step;
    double value_ = 0; // of the last call
};

} // namespace bk_parser
