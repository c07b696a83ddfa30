#pragma once

#include "document/save/proof/place_shifts_impl.h"
#include "document/save/record/layout_record_impl.h"

#include <string_view>

namespace bk_parser {

/// Whether the new expanded text has exactly the tree, given a record of the old text. Fills in how far the entries moved, or
/// the first entry that differs.
///
/// When the changes are close together, reads only the text around them. The bytes before and behind are the same as in the old
/// text, which was already compared with the tree.
struct Proof {
    bool is_equal = false;
    const ParserEntry* difference = nullptr;
    PlaceShifts shifts;
};
Proof prove(std::string_view before, const LayoutRecord& record, std::string_view now,
            const ParserGroup& root, bool has_escapes);

} // namespace bk_parser
