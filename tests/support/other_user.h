#pragma once

#include "tests/support/bkdoc_run.h"

#include <unistd.h>

/// Runs the tool in a folder as a user who, unlike root, may not read and write every file.
inline BkdocRun run_as_nobody(const std::string& folder, const std::vector<std::string>& arguments) {
    const ScratchFolder other;
    std::string before = "cd " + bkdoc_run_detail::shell_word(folder) + " && ";
    if (::geteuid() == 0) {
        before += "setpriv --reuid=65534 --regid=65534 --clear-groups ";
    }
    return run_bkdoc_on(other.write("in", ""), arguments, before);
}
