#pragma once

#include <cstddef>
#include <limits>

namespace bk {

/// Somebody who is told now and then how far a long loop has come. What is thrown by it passes through the loop.
class Pace {
public:
    Pace() = default;
    Pace(const Pace&) = delete;
    Pace& operator=(const Pace&) = delete;

    /// So many bytes of the work at hand are done. Costs a comparison unless somebody is to be told.
    void reach(std::size_t done) {
        if (done >= due_) {
            tell(done);
        }
    }
    /// Whether anybody will be told.
    bool is_watched() const noexcept { return due_ != never; }

protected:
    static constexpr std::size_t never = std::numeric_limits<std::size_t>::max();

    ~Pace() = default;
    /// Sets when the next call is due.
    virtual void tell(std::size_t done) = 0;

    std::size_t due_ = never;
};

/// So many bytes are done between two calls at most, where that can be had cheaply.
inline constexpr std::size_t pace_step = std::size_t{1} << 20;

} // namespace bk
