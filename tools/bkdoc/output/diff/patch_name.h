#pragma once

#include <string>

namespace bkdoc {

/// The name of a file for the head of a unified diff, as `patch -p0` and `git apply -p0` take it: without steps that lead back where there
/// is a way without, in quotes with escapes when it has quotes or control characters, and with a tab behind it when it has blanks.
std::string patch_name(const std::string& name);

} // namespace bkdoc
