#pragma once

#include "core/text/core_vectors_impl.h"

/// BK_USE_AVX2: functions may also be compiled for AVX2 (vectors of 32 bytes). They are called only when the processor has it.
/// MinGW's g++ does not align the stack for such vectors.
#if defined(BK_USE_VECTORS) && defined(__GNUC__) && !defined(__MINGW32__)
#define BK_USE_AVX2 1
#include <immintrin.h>

namespace bk {

inline bool has_avx2() noexcept {
    __builtin_cpu_init(); // a host's own constructors may call before everything is set up
    return __builtin_cpu_supports("avx2") != 0;
}

} // namespace bk
#endif

/// Marks a function that is compiled into each of its callers, for the processor of that caller.
#if defined(__GNUC__)
#define BK_ALWAYS_INLINE [[gnu::always_inline]] inline
#else
#define BK_ALWAYS_INLINE inline
#endif
