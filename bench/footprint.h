#pragma once

#include "core/core_string.h"

namespace bench {

/// The memory that `copies` parsed documents of this text take, in bytes per copy; negative on systems that do not report it. Measures the
/// growth of the resident set of a child process. Call it before other measurements: the child could reuse memory that this process has
/// freed, and that would not count.
double resident_bytes_per_copy(const CoreString& text, unsigned int copies);

} // namespace bench
