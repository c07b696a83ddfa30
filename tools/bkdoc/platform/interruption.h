#pragma once

#if !defined(_WIN32)
#include <csignal>
#endif

namespace bkdoc {

/// While it lives, Ctrl-C sets a flag instead of ending the tool. Long work checks the flag and stops where nothing is left
/// half done. May be nested; any thread may check.
class Interruption {
public:
    Interruption() noexcept;
    ~Interruption();
    Interruption(const Interruption&) = delete;
    Interruption& operator=(const Interruption&) = delete;

    /// Whether an interrupt came since the tool started.
    static bool is_wanted() noexcept;

private:
#if defined(_WIN32)
    void (*before_)(int);
#else
    struct sigaction before_ {};
#endif
};

} // namespace bkdoc
