#pragma once

#include "document/path.h"
#include "input/opened_document.h"
#include "verbs/find/match_writer.h"

#include <functional>
#include <string_view>
#include <vector>

namespace bkdoc {

/// Opens the documents that the operands after the first one name, calls `search` with each, and writes what it found. Returns
/// 0 when something was found, 1 when nothing was, 2 when a document could not be read. A document with errors is searched as
/// far as it could be read. `search` may stop at the first match when the options ask for no more.
ExitCode
find_in_documents(const Arguments& arguments, Streams& streams,
                  const std::function<std::vector<Match>(const OpenedDocument&, bool first_only)>& search);

/// Reports a malformed path with a caret, and returns false. `what` says where the path was given, such as "--path".
bool accept_path(const bk_parser::Path& path, std::string_view what, Streams& streams);

/// Reports that a document was not read completely, if so.
void note_errors(const OpenedDocument& document, Streams& streams);

} // namespace bkdoc
