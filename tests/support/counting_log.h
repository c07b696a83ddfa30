#pragma once

#include "core/core_log.h"

#include <cstddef>

/// Takes every message, in place of the handler that was installed before, and keeps none.
class CountingLog : public CoreLogHandler {
public:
    CountingLog() : previous_(s_main_log_handler) { s_main_log_handler = this; }
    ~CountingLog() override { s_main_log_handler = previous_; }
    CountingLog(const CountingLog&) = delete;
    CountingLog& operator=(const CountingLog&) = delete;

    void log(const int&, const CoreLogStream& stream) override {
        ++count;
        bytes += stream.get_message().get_length();
    }

    unsigned int count = 0;
    std::size_t bytes = 0;

private:
    CoreLogHandler* previous_;
};
