#pragma once

#include "core/core_log.h"

#include <string>

namespace bkdoc {

/// While it lives, keeps the first message that the library logs, in place of the earlier handler. Not thread-safe.
class LogKeeper : public CoreLogHandler {
public:
    LogKeeper() : replaced_(s_main_log_handler) { s_main_log_handler = this; }
    ~LogKeeper() override { s_main_log_handler = replaced_; }
    LogKeeper(const LogKeeper&) = delete;
    LogKeeper& operator=(const LogKeeper&) = delete;

    void log(const int&, const CoreLogStream& stream) override {
        if (first_.empty()) {
            first_ = stream.get_message().get_view();
            first_.erase(first_.find_last_not_of('\n') + 1);
        }
    }
    /// Without its line end; empty when nothing was logged.
    const std::string& first() const noexcept { return first_; }

private:
    CoreLogHandler* replaced_;
    std::string first_;
};

} // namespace bkdoc
