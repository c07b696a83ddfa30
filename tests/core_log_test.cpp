#include "core/core_log.h"
#include "core/reports/core_diagnostic_impl.h"

#include "tests/support/plain_text.h"
#include "tests/support/recording_log.h"

#include <gtest/gtest.h>

#include <string>

using namespace std::literals;

namespace {

/// A part of a message that counts how often it is composed.
struct CountedPart {
    int& uses;

    operator const char*() const {
        ++uses;
        return "part";
    }
};

TEST(core_log, a_new_stream_holds_an_empty_message) {
    EXPECT_TRUE(CoreLogStream().get_message().is_empty());
}

TEST(core_log, a_message_is_composed_by_appending) {
    CoreLogStream stream;
    stream += "line ";
    stream += 12u;
    stream += ',';
    stream += -3;
    stream += CoreString(" end");
    stream += static_cast<unsigned char>('\n');
    EXPECT_EQ(plain(stream.get_message()), "line 12,-3 end\n");
}

TEST(core_log, the_default_handler_takes_warnings) {
    ASSERT_NE(CoreLogHandler::s_main_log_handler, nullptr);
    EXPECT_EQ(CoreLogHandler::s_main_log_handler->get_verbosity(), 2);
    EXPECT_EQ(CoreLogHandler().get_verbosity(), 2);
}

TEST(core_log, the_default_handler_writes_the_message_to_standard_error_as_it_stands) {
    CoreLogStream stream;
    stream += CoreString("one \0 two\n", 10);
    testing::internal::CaptureStderr();
    CoreLogHandler::s_main_log_handler->log(2, stream);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "one \0 two\n"s);
}

TEST(core_log, the_default_handler_writes_nothing_to_standard_output) {
    CoreLogStream stream;
    stream += "message\n";
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    CoreLogHandler::s_main_log_handler->log(1, stream);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "message\n");
}

TEST(core_log, the_verbosity_is_what_was_set) {
    CoreLogHandler handler;
    for (const int verbosity : {0, 5, -1}) {
        handler.set_verbosity(verbosity);
        EXPECT_EQ(handler.get_verbosity(), verbosity);
    }
}

TEST(core_log, messages_go_to_the_handler_that_is_installed) {
    CoreLogHandler* before = CoreLogHandler::s_main_log_handler;
    {
        RecordingLog log;
        bk::report_warning("a ", 1, "\n");
        bk::report_error("b\n");
        EXPECT_EQ(log.messages, (std::vector<LoggedMessage>{{2, "a 1\n"}, {1, "b\n"}}));
    }
    EXPECT_EQ(CoreLogHandler::s_main_log_handler, before);
}

TEST(core_log, a_message_is_composed_only_when_the_threshold_admits_its_level) {
    for (int verbosity = -1; verbosity <= 3; ++verbosity) {
        RecordingLog log(verbosity);
        int uses = 0;
        bk::report_warning(CountedPart{uses});
        EXPECT_EQ(uses, verbosity >= 2 ? 1 : 0);
        bk::report_error(CountedPart{uses});
        EXPECT_EQ(uses, (verbosity >= 2 ? 1 : 0) + (verbosity >= 1 ? 1 : 0));
        EXPECT_EQ(log.messages.size(), static_cast<std::size_t>(uses));
    }
}

TEST(core_log, without_a_handler_nothing_is_reported) {
    CoreLogHandler* before = CoreLogHandler::s_main_log_handler;
    CoreLogHandler::s_main_log_handler = nullptr;
    int uses = 0;
    bk::report_error(CountedPart{uses});
    CoreLogHandler::s_main_log_handler = before;
    EXPECT_EQ(uses, 0);
}

} // namespace
