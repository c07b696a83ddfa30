#pragma once

#include <string>

namespace bk {

/// The reason when there is no file at a path.
inline constexpr const char* no_such_file = "no such file";

/// Clears the system's last error, so that last_system_reason reports only later errors.
void forget_system_reason() noexcept;

/// Why the last call of the operating system on this thread failed, in plain English whatever the locale: "permission denied".
/// Empty when none has failed since forget_system_reason.
std::string last_system_reason();

} // namespace bk
