#pragma once

#include <string>
#include <string_view>

namespace bkdoc {

/// Why a word is not a problem code, with a suggestion; empty when it is one.
std::string unknown_code(std::string_view word);

} // namespace bkdoc
