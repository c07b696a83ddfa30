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
