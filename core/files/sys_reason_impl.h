#pragma once

#include <string>

namespace bk {

/// The reason where nothing stands at a path.
inline constexpr const char* no_such_file = "no such file";

/// Clears the system's last error, so that a reason that is found later is a new one.
void forget_system_reason() noexcept;

/// Why the last call of the operating system on this thread failed, in plain English whatever the locale: "permission denied".
/// Empty when none has failed since forget_system_reason.
std::string last_system_reason();

} // namespace bk
