#pragma once

/// BK_HAS_VECTORS: the processor surely has vectors of 16 bytes (SSE2, as every x86-64). BK_USE_VECTORS: they are also
/// used; where they are not, plain loops and whole numbers do the same.
#if defined(__SSE2__) || defined(_M_X64)
#define BK_HAS_VECTORS 1
#include <emmintrin.h>
#if !defined(BK_PARSER_PORTABLE)
#define BK_USE_VECTORS 1
#endif
#endif

/// BK_USE_AVX2: functions may be compiled for vectors of 32 bytes as well, and are called where the processor has them.
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
