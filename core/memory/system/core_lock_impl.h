#pragma once

#if !defined(_WIN32)
#include <mutex>
#endif

/// A lock that works before the first static constructor and after the last static destructor.
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
