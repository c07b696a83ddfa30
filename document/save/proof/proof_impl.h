#pragma once

#include "document/save/apply/text_splice_impl.h"
#include "document/save/proof/place_shifts_impl.h"
#include "document/save/record/layout_record_impl.h"

#include <cstddef>
#include <string_view>
#include <utility>
#include <vector>

namespace bk_parser {

/// The part of the old expanded text that contains all changes.
struct ProofWindow {
    std::size_t begin = 0;
    std::size_t end = 0;
    std::size_t rest = 0;          // bytes after the window
    std::size_t line_known_at = 0; // the last place up to `begin` whose line is known
    core_ulong known_line = 0;     // the line of that place, from 0
    core_ulong line_breaks = 0;    // in the window
    core_ulong end_column = 0;     // of `end`, from 0
    const ParserGroup* group = nullptr;
    unsigned int first = 0; // first entry of the group in the window
    unsigned int last = 0;  // the position after the last entry in the window
    std::vector<std::pair<const ParserGroup*, unsigned int>>
        entries_after; // for each group around the window, the position of the first entry after it
};
/// Finds the window. The record must have changes.
ProofWindow find_window(std::string_view before, const LayoutRecord& record);

/// The result of comparing the new expanded text with the tree. If they are equal, `shifts` says how far the entries moved. Otherwise
/// `difference` is the first entry that differs.
///
/// When the changes are close together, `prove` reads only the window. The bytes outside of it are the same as in the old text, which the
/// record has already compared with the tree.
struct Proof {
    bool is_equal = false;
    const ParserEntry* difference = nullptr;
    PlaceShifts shifts;
};
Proof prove(std::string_view before, const LayoutRecord& record, std::string_view now,
            const ParserGroup& root, bool has_escapes);

/// Proves a text that was spliced in place. The bytes outside of the splice are the old ones, so it does not compare them. It reads
/// only the window. If that does not prove that the text has the tree, `is_equal` is false and `difference` is null, and the caller must
/// find out in another way.
Proof prove_spliced(ProofWindow&& window, const TextSplice& splice, std::string_view now, bool has_escapes);

} // namespace bk_parser
