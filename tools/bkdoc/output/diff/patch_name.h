#pragma once

#include <string>

namespace bkdoc {

/// The name of a file in the head of a unified diff, as `patch -p0` and `git apply -p0` read it. Avoids ".." where another path
/// exists, quotes a name that has quotes or control characters, and puts a tab after a name with blanks.
std::string patch_name(const std::string& name);

} // namespace bkdoc
