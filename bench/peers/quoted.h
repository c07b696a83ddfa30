#pragma once

#include "bench/peers/document.h"

namespace bench {

/// In double quotes, with the escapes that JSON, TOML and libconfig share.
std::string quoted(std::string_view text);
/// A value as these three spell it.
std::string spelled(const Value& value);

} // namespace bench
