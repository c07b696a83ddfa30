#pragma once

#include "document/save.h"

#include <string>

namespace bk_parser {

/// A change of a file to new bytes. Sets a reason when the file exists and cannot be read.
FileChange change_of_file(const std::string& path, std::string&& after, std::string& reason);

} // namespace bk_parser
