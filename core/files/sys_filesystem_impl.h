#pragma once

#include "core/core_string.h"

#include <string_view>

namespace bk {

/// The functions of SysFilesystem for the library itself. When memory runs out they throw; the public ones say that there is no
/// such file.
bool is_file(std::string_view path);
/// Like is_file, but false for a pipe, socket, terminal or other device, where a reader may wait for ever.
bool is_regular_file(std::string_view path);
/// Works on the text alone: a ".." step removes the step before it.
CoreString absolute_path(const CoreString& path);
/// The absolute path of the file that the system opens under that name. It differs from the textual one where a ".." step
/// follows a symbolic link to a folder.
CoreString opened_path(const CoreString& path);
/// The path as people read it: "shots/../lib/a.bkd" is "lib/a.bkd". It stays as it is where the system opens another file under the
/// shorter name, because a step back follows a symbolic link to a folder, and where its folder is not there.
CoreString path_without_steps_back(const CoreString& path);

} // namespace bk
