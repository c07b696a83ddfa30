#pragma once

#include "input/read_recorder.h"

#include <string_view>

namespace bkdoc {

/// What helps to understand a fault whose message alone may mislead; empty for the others.
std::string_view note_for(const DocumentFault& fault, const SourceMap& sources);

} // namespace bkdoc
