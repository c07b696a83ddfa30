#pragma once

#include "core/core_log.h"

#include <cerrno>
#include <new>

namespace bk {

/// Restores errno, so that the library's own system calls do not change it.
class KeptErrno {
public:
    KeptErrno() noexcept : kept_(errno) {}
    ~KeptErrno() { errno = kept_; }
    KeptErrno(const KeptErrno&) = delete;
    KeptErrno& operator=(const KeptErrno&) = delete;

private:
    int kept_;
};

/// True when the main log handler takes messages of this level.
inline bool is_reported(int level) {
    const CoreLogHandler* handler = CoreLogHandler::s_main_log_handler;
    return handler != nullptr && handler->get_verbosity() >= level;
}

/// Delivers the message that `compose` makes. Calls `compose` only when the handler takes messages of this level. Drops a
/// message for which there is no memory, and the operation goes on: the message is only about a fault of the document.
template <class Compose>
void report_composed(int level, Compose compose) {
    if (!is_reported(level)) {
        return;
    }
    const KeptErrno kept;
    try {
        CoreLogStream stream;
        compose(stream);
        CoreLogHandler::s_main_log_handler->log(level, stream);
    } catch (const std::bad_alloc&) {
        return;
    }
}

/// Delivers a message made of these parts.
template <class... Parts>
void report(int level, const Parts&... parts) {
    report_composed(level, [&](CoreLogStream& stream) { ((stream += parts), ...); });
}

template <class... Parts>
void report_warning(const Parts&... parts) {
    report(CoreLogHandler::level_warning, parts...);
}

template <class... Parts>
void report_error(const Parts&... parts) {
    report(CoreLogHandler::level_error, parts...);
}

} // namespace bk
