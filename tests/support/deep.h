#pragma once

#include "tests/support/sanitizer.h"

/// So many nested groups overflow the stack of any function that recurses. Under a sanitizer, blocks and stack frames are larger, and a
/// fifth of them is enough.
#if defined(BK_PARSER_SANITIZED_MEMORY)
inline constexpr unsigned int million_deep = 200000;
#else
inline constexpr unsigned int million_deep = 1000000;
#endif
