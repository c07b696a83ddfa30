#pragma once

#include "document/save/proof/place_shifts_impl.h"
#include "document/save/record/layout_record_impl.h"

#include <string_view>

namespace bk_parser {

/// Whether the new expanded text says just the tree, given what the old one said. Fills in the places that entries then have, or the
/// entry at which the tree differs.
///
/// When what has changed lies together, only the text around it is read: what is before and behind is the same bytes, and was compared
/// with the tree when the old text was read.
struct Proof {
    bool is_equal = false;
    const ParserEntry* difference = nullptr;
    PlaceShifts shifts;
};
Proof prove(std::string_view before, const LayoutRecord& record, std::string_view now,
            const ParserGroup& root, bool has_escapes);

} // namespace bk_parser
