#pragma once

#include "input/opened_document.h"

#include <functional>

namespace bkdoc {

/// Opens one document that the operands of the command line name after the other, also those of folders and patterns, reports its problems aside, and calls `visit` with every
/// document that could be read. The worst of all results counts; an interrupt ends the work.
ExitCode for_each_document(const Arguments& arguments, Streams& streams,
                           const std::function<ExitCode(OpenedDocument&)>& visit);

/// The same for verbs with the option --path: `visit` gets what it leaves of the tree, too, and is not called where it
/// finds nothing, which is told and gives EXIT_FAULTS.
ExitCode for_each_selection(const Arguments& arguments, Streams& streams,
                            const std::function<ExitCode(const OpenedDocument&, const ParserGroup&)>& visit);

} // namespace bkdoc
