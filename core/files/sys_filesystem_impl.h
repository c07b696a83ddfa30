#pragma once

#include "core/core_string.h"

#include <string_view>

namespace bk {

/// What SysFilesystem answers, for the library itself: memory that has run out is an exception here, and not a file
/// that is not there.
bool is_file(std::string_view path);
/// The same of files that have an end: no pipe, socket, terminal or other device, whose reader may wait for ever.
bool is_regular_file(std::string_view path);
/// Works on the text alone: a ".." step takes the step before it away.
CoreString absolute_path(const CoreString& path);
/// The same of the file that the system opens under that name: where a ".." step leaves a folder through a symbolic link, it
/// comes to another place.
CoreString opened_path(const CoreString& path);

} // namespace bk
