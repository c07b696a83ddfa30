#pragma once

#include <chrono>
#include <ctime>

namespace bench {

/// The processor time of this thread in seconds. Unlike wall-clock time, it does not pass while other programs run.
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
