#pragma once

#include "document/save/edits/text_splice_impl.h"
#include "document/save/proof/place_shifts_impl.h"
#include "document/save/record/layout_record_impl.h"

#include <cstddef>
#include <string_view>
#include <utility>
#include <vector>

namespace bk_parser {

/// The stretch of the old expanded text that holds all changes.
struct ProofWindow {
    std::size_t begin = 0;
    std::size_t end = 0;
    std::size_t rest = 0;          // bytes after it
    std::size_t line_known_at = 0; // last place before `begin` whose line, from 0, is known
    core_ulong known_line = 0;
    core_ulong line_breaks = 0; // in the window
    core_ulong end_column = 0;  // from 0
    const ParserGroup* group = nullptr;
    unsigned int first = 0; // first entry of the group in the window
    unsigned int last = 0;  // after the last one
    std::vector<std::pair<const ParserGroup*, unsigned int>>
        behind; // positions of the entries after the window
};
/// The record must have changes.
ProofWindow find_window(std::string_view before, const LayoutRecord& record);

/// Whether the new expanded text has exactly the tree, given a record of the old text. Fills in how far the entries moved, or
/// the first entry that differs.
///
/// When the changes are close together, reads only the text around them. The bytes before and after are the same as in the old
/// text, which was already compared with the tree.
struct Proof {
    bool is_equal = false;
    const ParserEntry* difference = nullptr;
    PlaceShifts shifts;
};
Proof prove(std::string_view before, const LayoutRecord& record, std::string_view now,
            const ParserGroup& root, bool has_escapes);

/// The same for a text that was spliced in place, so that the bytes around the splice are the same without a comparison. When
/// the window is not enough to tell, is_equal is false without a difference.
Proof prove_spliced(ProofWindow&& window, const TextSplice& splice, std::string_view now, bool has_escapes);

} // namespace bk_parser
