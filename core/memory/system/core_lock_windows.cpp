#if defined(_WIN32)

#include "core/memory/system/core_lock_impl.h"

#include <windows.h>

namespace bk {

static_assert(sizeof(SRWLOCK) == sizeof(void*) && alignof(SRWLOCK) == alignof(void*));

void StaticLock::lock() noexcept {
    AcquireSRWLockExclusive(reinterpret_cast<PSRWLOCK>(&state_));
}

void StaticLock::unlock() noexcept {
    ReleaseSRWLockExclusive(reinterpret_cast<PSRWLOCK>(&state_));
}

} // namespace bk

#endif
