#pragma once

#include "core/core_log.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <vector>

/// A message that a log handler got.
struct LoggedMessage {
    int level;
    std::string text;

    bool operator==(const LoggedMessage&) const = default;
};

inline void PrintTo(const LoggedMessage& message, std::ostream* out) {
    *out << "level " << message.level << ": " << testing::PrintToString(message.text);
}

/// While it lives, records the library's messages in place of the earlier handler. A message above its verbosity fails the test, because
/// the library should not have composed it.
class RecordingLog : public CoreLogHandler {
public:
    explicit RecordingLog(int verbosity = level_warning) : previous_(s_main_log_handler) {
        set_verbosity(verbosity);
        s_main_log_handler = this;
    }
    ~RecordingLog() override { s_main_log_handler = previous_; }
    RecordingLog(const RecordingLog&) = delete;
    RecordingLog& operator=(const RecordingLog&) = delete;

    void log(const int& level, const CoreLogStream& stream) override {
        const std::string text(stream.get_message().get_view());
        EXPECT_LE(level, get_verbosity()) << "composed although nobody takes it: " << text;
        messages.push_back({level, text});
    }

    bool is_empty() const { return messages.empty(); }

    /// Returns the messages so far, and forgets them.
    std::vector<LoggedMessage> take() {
        std::vector<LoggedMessage> taken;
        taken.swap(messages);
        return taken;
    }

    std::vector<LoggedMessage> messages;

private:
    CoreLogHandler* previous_;
};

/// Expects one warning and no other message.
inline std::vector<LoggedMessage> one_warning(const std::string& text) {
    return {{CoreLogHandler::level_warning, text}};
}
