#pragma once

#include "document/path.h"
#include "input/opened_document.h"
#include "verbs/find/match_writer.h"

#include <functional>
#include <string_view>
#include <vector>

namespace bkdoc {

/// Opens the documents that the operands behind the first name, calls `search` with each, and writes what it found. 0 when
/// something was found, 1 when nothing was, 2 when a document could not be read. Errors of a document do not count: what could be
/// read of it is searched. `search` stops at the first match when that is all that is asked for.
ExitCode
find_in_documents(const Arguments& arguments, Streams& streams,
                  const std::function<std::vector<Match>(const OpenedDocument&, bool first_only)>& search);

/// Tells a malformed path, with a caret; `what` says where it was given, as "--path". False when it is malformed.
bool accept_path(const bk_parser::Path& path, std::string_view what, Streams& streams);

/// Tells that a document is not read whole, when that is so.
void note_errors(const OpenedDocument& document, Streams& streams);

} // namespace bkdoc
