#pragma once

#include "core/core_string.h"

namespace bench {

/// One step in the life of a document. `run` gives the seconds that this step alone took; what it needs before
/// and leaves behind is not counted.
struct Phase {
    const char* name;
    double (*run)(const CoreString& text);
};

/// Parse, typed walk (first, which converts, and again), print, destroy.
extern const Phase phases[5];

} // namespace bench
