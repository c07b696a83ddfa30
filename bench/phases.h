#pragma once

#include "core/core_string.h"

namespace bench {

/// One step in the life of a document. `run` takes it for so many documents of the same text, one after the other, and
/// gives the seconds that this step alone took; what it needs before and leaves behind is not counted.
struct Phase {
    const char* name;
    double (*run)(const CoreString& text, unsigned int copies);
};

/// Parse, typed walk (first, which converts, and again), print, encode, decode, destroy.
extern const Phase phases[7];

} // namespace bench
