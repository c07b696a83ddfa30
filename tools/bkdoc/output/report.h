#pragma once

#include "input/document.h"
#include "output/output.h"
#include "verbs/exit_code.h"

namespace bkdoc {

/// Writes every fault of the document, and the include that stopped its reading, each as
/// "file:line:column: warning: message" with the source line and a caret under it. Before a fault of an
/// included file stands how it was included, once for faults that follow each other in it.
void report(const Document& document, Output& out);

/// What the reading of the document alone means for the exit code.
ExitCode reading_result(const Document& document);

/// For verbs that write something else: the report goes to the error stream.
ExitCode report_aside(const Document& document, Streams& streams);

} // namespace bkdoc
