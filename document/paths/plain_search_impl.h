#pragma once

#include "document/paths/path_steps_impl.h"

namespace bk_parser {

/// Paths without "**" and numbers of entries, and of few steps: an entry at some depth can only be the step of that
/// number, and nothing is counted.
bool is_plain(const ParsedPath& path) noexcept;

/// The first entry that a plain path finds; null when there is none. Takes no memory, so that it is several times as fast as
/// the matcher of all paths.
ParserEntry* find_plain(const ParserGroup& group, const ParsedPath& path);

} // namespace bk_parser
