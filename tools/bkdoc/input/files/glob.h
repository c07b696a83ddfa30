#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace bkdoc {

/// Whether a name matches a pattern: `*` matches any number of characters, `?` one, `[a-z]` one of these, `[!a-z]` one of the
/// others. Takes time in proportion to the product of the lengths.
bool matches_glob(std::string_view pattern, std::string_view name) noexcept;

bool is_glob(std::string_view text) noexcept;

/// The paths that match a pattern, sorted. The parts between slashes match names; `**` matches any number of folders, or none.
/// Names with a leading dot only match patterns with one.
std::vector<std::string> expand_glob(const std::string& pattern);

} // namespace bkdoc
