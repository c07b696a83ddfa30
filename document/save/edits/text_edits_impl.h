#pragma once

#include "document/save/edits/layout_edits_impl.h"

#include <string>
#include <string_view>
#include <vector>

namespace bk_parser {

/// By their places; what is put in at one place keeps its order.
void sort_edits(std::vector<Edit>& edits);

/// Whether two places of a file ask for the same.
bool are_alike(const std::vector<Edit>& one, const std::vector<Edit>& two) noexcept;

/// The text with sorted edits of it. Removals may overlap.
std::string edited(std::string_view text, const std::vector<Edit>& edits);

} // namespace bk_parser
