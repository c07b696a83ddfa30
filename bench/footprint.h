#pragma once

#include "core/core_string.h"

namespace bench {

/// Memory that `copies` parsed documents of this text take, in bytes per copy; negative where it cannot be told. It
/// is the growth of the resident set of a child process. What the calling process has given back before may be
/// used again and hide some of it, so measure first.
double resident_bytes_per_copy(const CoreString& text, unsigned int copies);

} // namespace bench
