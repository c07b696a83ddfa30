#pragma once

#if defined(BK_PARSER_ASSERTIONS)

#include <cstdio>
#include <cstdlib>

namespace bk {

[[noreturn]] inline void end_for_assertion(const char* condition, const char* file, int line) noexcept {
    std::fprintf(stderr, "%s:%d: does not hold: %s\n", file, line, condition);
    std::abort();
}

} // namespace bk

/// Checks an invariant in debug and sanitizer builds, and ends the process when it does not hold. Does nothing in other builds.
#define BK_ASSERT(condition)                                                                                 \
    ((condition) ? static_cast<void>(0) : bk::end_for_assertion(#condition, __FILE__, __LINE__))

#else

#define BK_ASSERT(condition) static_cast<void>(0)

#endif
