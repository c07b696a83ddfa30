#pragma once

#include <string>
#include <string_view>

namespace bk_parser {

/// A word of a document as a message shows it: in single quotes, on one line, without control characters, cut after 60 bytes.
std::string shown(std::string_view word);

/// A message that may have names of files, on one line: spells control characters and bytes that are not UTF-8 as `shown` does.
std::string on_one_line(std::string_view message);

/// "1 byte", "2 bytes"
std::string counted(std::size_t count, std::string_view thing);

} // namespace bk_parser
