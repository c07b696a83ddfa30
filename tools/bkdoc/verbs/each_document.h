#pragma once

#include "input/opened_document.h"

#include <functional>

namespace bkdoc {

/// Opens one operand of the command line after the other, reports its problems aside, and calls `visit` with every
/// document that could be read. The worst of all results counts; an interrupt ends the work.
ExitCode for_each_document(const Arguments& arguments, Streams& streams,
                           const std::function<ExitCode(OpenedDocument&)>& visit);

} // namespace bkdoc
