#pragma once

#include <string>
#include <string_view>

namespace bkdoc {

/// The hidden verb that packagers call: `bkdoc generate man|bash|zsh|fish`.
inline constexpr std::string_view generate_verb = "generate";

/// The manual page or the completions of a shell, made from the command table. Empty for another name.
std::string generated(std::string_view what);

} // namespace bkdoc
