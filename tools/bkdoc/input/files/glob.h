#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace bkdoc {

/// Whether a name fits a pattern: `*` is any number of characters, `?` is one, `[a-z]` one of those, `[!a-z]` one of the
/// others. Linear in the product of the lengths.
bool matches_glob(std::string_view pattern, std::string_view name) noexcept;

bool is_glob(std::string_view text) noexcept;

/// The paths that fit a pattern, sorted. A pattern stands for names of one folder each between slashes; `**` is any number
/// of folders, none too. Names that begin with a dot fit only patterns that do.
std::vector<std::string> expand_glob(const std::string& pattern);

} // namespace bkdoc
