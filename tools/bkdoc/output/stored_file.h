#pragma once

#include "output/output.h"

#include <string>
#include <string_view>

namespace bkdoc {

/// Replaces a file in one step: it stays as it was until all new bytes are on the disk. Tells which hard links keep the old content.
/// Returns the reason, with the file's name, when that fails; else nothing.
std::string store_file(const std::string& path, std::string_view bytes, Streams& streams);

} // namespace bkdoc
