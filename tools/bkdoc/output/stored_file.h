#pragma once

#include "output/output.h"

#include <string>
#include <string_view>

namespace bkdoc {

/// Puts these bytes in the place of a file, which stays as it was until all of them are on the disk, and says which hard links keep
/// the old content. Empty, or why they are not stored, with the file's name.
std::string store_file(const std::string& path, std::string_view bytes, Streams& streams);

} // namespace bkdoc
