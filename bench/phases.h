#pragma once

#include "core/core_string.h"

namespace bench {

/// One step in the life of a document. `run` does it for `copies` documents of the same text, one after the other. It returns the seconds
/// of the step alone, without the preparation and the clean-up.
struct Phase {
    const char* name;
    double (*run)(const CoreString& text, unsigned int copies);
};

/// Parse, typed walk (first, which converts, and again), print, encode, decode, destroy.
extern const Phase phases[7];

} // namespace bench
