#pragma once

#include "core/core_string.h"

namespace bench {

/// One step in the life of a document, such as the parse. `run` does the step with `copies` documents of the same text, one after the
/// other, and returns its seconds without the preparation and the clean-up.
struct Phase {
    const char* name;
    double (*run)(const CoreString& text, unsigned int copies);
};

/// Parse, typed walk (first, which converts, and again), print, encode, decode, destroy.
extern const Phase phases[7];

} // namespace bench
