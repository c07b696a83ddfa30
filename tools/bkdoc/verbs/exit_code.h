#pragma once

namespace bkdoc {

/// The exit codes of all verbs. Of several results the largest one counts.
enum ExitCode : int {
    EXIT_CLEAN = 0,        ///< success, or the answer is yes
    EXIT_FAULTS = 1,       ///< the answer is no: problems, differences, nothing found
    EXIT_UNREADABLE = 2,   ///< the request could not be carried out
    EXIT_INTERRUPTED = 130 ///< the user interrupted it
};

} // namespace bkdoc
