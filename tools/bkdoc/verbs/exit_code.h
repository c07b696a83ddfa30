#pragma once

namespace bkdoc {

/// What every verb gives back to the shell. Of several results the largest counts.
enum ExitCode : int {
    EXIT_CLEAN = 0,        ///< all is well, or the answer is yes
    EXIT_FAULTS = 1,       ///< the answer is no: problems, differences, nothing found
    EXIT_UNREADABLE = 2,   ///< what was asked for could not be done
    EXIT_INTERRUPTED = 130 ///< the user ended it
};

} // namespace bkdoc
