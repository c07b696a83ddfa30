#pragma once

#include "output/output.h"

#include <string>
#include <string_view>

namespace bkdoc {

/// Writes how two texts differ, line by line, as `patch` takes it; nothing when they are equal. Three lines around each
/// change are shown. At most in proportion to the lines times 256: of texts that differ more, the difference may not be
/// the smallest.
void write_unified_diff(std::string_view before, std::string_view after, const std::string& old_name,
                        const std::string& new_name, Output& out);

} // namespace bkdoc
