#pragma once

#include <cstddef>
#include <limits>

namespace bk {

/// A long loop reports its progress to this object. Exceptions of `tell` pass through the loop.
class Pace {
public:
    Pace() = default;
    Pace(const Pace&) = delete;
    Pace& operator=(const Pace&) = delete;

    /// Reports that this many bytes are done. Costs one comparison when no call is due.
    void reach(std::size_t done) {
        if (done >= due_) {
            tell(done);
        }
    }
    /// Whether `tell` will be called at all.
    bool is_watched() const noexcept { return due_ != never; }

    virtual ~Pace() = default;

protected:
    static constexpr std::size_t never = std::numeric_limits<std::size_t>::max();

    /// Sets when the next call is due.
    virtual void tell(std::size_t done) = 0;

    std::size_t due_ = never;
};

/// At most this many bytes are done between two calls, where the loop can cheaply stop that often.
inline constexpr std::size_t pace_step = std::size_t{1} << 20;

} // namespace bk
