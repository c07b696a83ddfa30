#pragma once

#include "document/paths/path_steps_impl.h"

namespace bk_parser {

/// Searches for plain paths: with few steps, and without "**" and numbers of entries. An entry can match only the step at its own
/// depth, and nothing has to be counted.
bool is_plain(const ParsedPath& path) noexcept;

/// The first entry that a plain path finds; null when there is none. Allocates nothing, so that it is several times as fast as
/// PathMatcher.
ParserEntry* find_plain(const ParserGroup& group, const ParsedPath& path);

} // namespace bk_parser
