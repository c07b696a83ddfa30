#pragma once

#if !defined(_WIN32)
#include <csignal>
#endif

namespace bkdoc {

/// While one lives, an interrupt from the keyboard ends the tool no more: it is remembered, and work that asks can stop
/// where nothing is left half done. They may be nested; threads may ask.
class Interruption {
public:
    Interruption() noexcept;
    ~Interruption();
    Interruption(const Interruption&) = delete;
    Interruption& operator=(const Interruption&) = delete;

    /// Whether there was an interrupt since the tool began.
    static bool is_wanted() noexcept;

private:
#if defined(_WIN32)
    void (*before_)(int);
#else
    struct sigaction before_ {};
#endif
};

} // namespace bkdoc
