#pragma once

#include <string>
#include <string_view>

namespace bkdoc {

/// Why a word is no code of a problem, with the code that was surely meant; empty when it is one.
std::string unknown_code(std::string_view word);

} // namespace bkdoc
