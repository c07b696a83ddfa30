#pragma once

#if !defined(_WIN32)
#include <mutex>
#endif

/// A lock that is there before the first static constructor runs and that no static destructor takes away.
namespace bk {

#if defined(_WIN32)

/// MinGW's std::mutex has a constructor and a destructor.
class StaticLock {
public:
    void lock() noexcept;
    void unlock() noexcept;

private:
    void* state_ = nullptr; // a slim lock of the system's
};

#else

using StaticLock = std::mutex;

#endif

} // namespace bk
