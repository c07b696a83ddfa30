#pragma once

#include "input/opened_document.h"

#include <functional>

namespace bkdoc {

/// Opens the documents that the operands name one after the other, also those of folders and patterns, writes their problems to
/// the error stream, and calls `visit` with every document that could be read. Returns the worst of all results. An interrupt
/// ends the work.
ExitCode for_each_document(const Arguments& arguments, Streams& streams,
                           const std::function<ExitCode(OpenedDocument&)>& visit);

/// Opens the documents in the same way for verbs with the option --path. `visit` also gets the part of the tree that the path selects. Where the path
/// finds nothing, the verb says so, does not call `visit`, and returns EXIT_FAULTS.
ExitCode for_each_selection(const Arguments& arguments, Streams& streams,
                            const std::function<ExitCode(const OpenedDocument&, const ParserGroup&)>& visit);

} // namespace bkdoc
