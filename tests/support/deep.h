#pragma once

#include "tests/support/sanitizer.h"

/// Groups in each other that overflow the stack of whatever would recurse. A sanitizer makes each block and each frame larger, so that a
/// fifth of them does there.
#if defined(BK_PARSER_SANITIZED_MEMORY)
inline constexpr unsigned int million_deep = 200000;
#else
inline constexpr unsigned int million_deep = 1000000;
#endif
