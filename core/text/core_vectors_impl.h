#pragma once

/// BK_HAS_VECTORS: SSE2 (vectors of 16 bytes) is guaranteed, as on every x86-64. BK_USE_VECTORS: the library uses it.
/// Otherwise plain loops and 64-bit numbers do the same.
#if defined(__SSE2__) || defined(_M_X64)
#define BK_HAS_VECTORS 1
#include <emmintrin.h>
#if !defined(BK_PARSER_PORTABLE)
#define BK_USE_VECTORS 1
#endif
#endif
