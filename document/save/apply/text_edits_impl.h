#pragma once

#include "document/save/edits/layout_edits_impl.h"

#include <string>
#include <string_view>
#include <vector>

namespace bk_parser {

/// Sorts edits by place. Insertions at the same place keep their order.
void sort_edits(std::vector<Edit>& edits);

/// Whether two inclusions of a file need the same edits.
bool are_alike(const std::vector<Edit>& one, const std::vector<Edit>& two) noexcept;

/// The text after sorted edits. Removals may overlap.
std::string edited(std::string_view text, const std::vector<Edit>& edits);

} // namespace bk_parser
