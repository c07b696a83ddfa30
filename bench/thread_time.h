#pragma once

#include <chrono>
#include <ctime>

namespace bench {

/// Seconds of this thread's work: unlike the time on the wall, they do not pass while other programs run.
inline double thread_seconds() {
#if defined(CLOCK_THREAD_CPUTIME_ID)
    timespec time = {};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
#else
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
#endif
}

} // namespace bench
