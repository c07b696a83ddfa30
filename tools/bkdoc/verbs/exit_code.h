#pragma once

namespace bkdoc {

/// What every verb gives back to the shell. `same` uses the first two for "equal" and "different".
enum ExitCode : int { EXIT_CLEAN = 0, EXIT_FAULTS = 1, EXIT_UNREADABLE = 2 };

} // namespace bkdoc
