#pragma once

#include "document/save.h"

#include <string>

namespace bk_parser {

/// The change that gives a file new bytes. With a reason when there is a file that cannot be read.
FileChange change_of_file(const std::string& path, std::string&& after, std::string& reason);

} // namespace bk_parser
