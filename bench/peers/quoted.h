#pragma once

#include "bench/peers/document.h"

namespace bench {

/// The text in double quotes, with the escapes that JSON, TOML and libconfig have in common.
std::string quoted(std::string_view text);
/// The value in the syntax that these three have in common.
std::string spelled(const Value& value);

} // namespace bench
