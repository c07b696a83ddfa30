#pragma once

#include <string>
#include <string_view>

namespace bkdoc {

/// Replaces a file in one step: it stays as it was until all new bytes are on the disk. Returns the reason, with the file's
/// name, when that fails; else nothing.
std::string store_file(const std::string& path, std::string_view bytes);

} // namespace bkdoc
