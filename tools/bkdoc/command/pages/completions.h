#pragma once

#include <string>
#include <string_view>

namespace bkdoc {

/// The verb, absent from the help, that packagers call: `bkdoc generate man|bash|zsh|fish`.
inline constexpr std::string_view generate_verb = "generate";

/// The manual page or a shell's completion, made of the command table. Empty when there is none of that name.
std::string generated(std::string_view what);

} // namespace bkdoc
