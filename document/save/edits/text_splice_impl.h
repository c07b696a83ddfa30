#pragma once

#include "core/core_string.h"
#include "document/save/edits/layout_edits_impl.h"

#include <cstddef>
#include <vector>

namespace bk_parser {

/// A replacement of one stretch of a text.
struct TextSplice {
    std::size_t begin = 0;
    std::size_t old_end = 0;
    std::size_t new_end = 0;
};

/// Applies the edits in place. Writes to the stretch that they cover and moves what follows it, so all other bytes stay.
TextSplice splice(CoreString& text, std::vector<Edit> edits);

} // namespace bk_parser
