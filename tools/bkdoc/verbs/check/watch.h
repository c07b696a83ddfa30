#pragma once

#include "input/files/file_list.h"
#include "output/output.h"
#include "verbs/exit_code.h"

#include <filesystem>
#include <functional>
#include <vector>

namespace bkdoc {

/// The result of one round of checks.
struct WatchRound {
    ExitCode code = EXIT_CLEAN;
    std::vector<std::filesystem::path> sources; // files read, and paths where an include was not found
};

/// Checks, and checks again whenever one of the files or folders changes, or a file that a document includes or looks for. An
/// interrupt ends it.
ExitCode watch(const FileListOptions& list, Streams& streams, const std::function<WatchRound()>& check);

} // namespace bkdoc
