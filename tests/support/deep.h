#pragma once

#include "tests/support/sanitizer.h"

/// The number of nested groups that overflows the stack of any function that recurses. Under a sanitizer a fifth is enough, because stack
/// frames are larger.
#if defined(BK_PARSER_SANITIZED_MEMORY)
inline constexpr unsigned int million_deep = 200000;
#else
inline constexpr unsigned int million_deep = 1000000;
#endif
