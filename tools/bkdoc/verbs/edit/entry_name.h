#pragma once

#include "output/output.h"

#include <string>
#include <string_view>

namespace bkdoc {

/// Why an entry cannot have this name: the words that follow "cannot be called 'NAME'".
std::string why_no_name(std::string_view name);

/// Warns of a name that people and readers of other formats take for a value: true, false, inf, nan.
void warn_of_name(std::string_view name, Streams& streams);

/// The name in the last step of a path.
std::string_view last_name(std::string_view path) noexcept;

} // namespace bkdoc
