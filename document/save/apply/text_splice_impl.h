#pragma once

#include "core/core_string.h"
#include "document/save/edits/layout_edits_impl.h"

#include <cstddef>
#include <vector>

namespace bk_parser {

/// A replacement of one range of a text: the bytes from `begin` to `old_end` became those from `begin` to `new_end`.
struct TextSplice {
    std::size_t begin = 0;
    std::size_t old_end = 0;
    std::size_t new_end = 0;
};

/// Applies the edits, of which there must be at least one, in place. Writes only to the range that they cover, and moves the bytes after
/// it. Throws std::length_error, and changes nothing, when the text would become too long.
TextSplice splice(CoreString& text, std::vector<Edit> edits);

} // namespace bk_parser
