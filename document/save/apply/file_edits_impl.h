#pragma once

#include "document/save/edits/layout_edits_impl.h"
#include "document/save/record/save_sources_impl.h"

#include <string>
#include <string_view>
#include <vector>

namespace bk_parser {

/// Whether the edits would put a line feed into a text whose lines end in carriage returns alone.
bool breaks_returns(std::string_view text, const std::vector<Edit>& edits);

/// Turns the edits of all inclusions into new bytes of files. Returns false, with a reason, when inclusions of one file need
/// different edits.
bool apply_edits(const SaveSources& sources, const FileNames& names, const std::vector<Edit>& edits,
                 const std::string& key, NewBytes& bytes, std::string& reason);

} // namespace bk_parser
