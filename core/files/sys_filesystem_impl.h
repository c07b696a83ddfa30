#pragma once

#include "core/core_string.h"

#include <string_view>

namespace bk {

/// What SysFilesystem answers, for the library itself: memory that has run out is an exception here, and not a file
/// that is not there.
bool is_file(std::string_view path);
/// The same of files that have an end: no pipe, socket, terminal or other device, whose reader may wait for ever.
bool is_regular_file(std::string_view path);
CoreString absolute_path(const CoreString& path);

} // namespace bk
