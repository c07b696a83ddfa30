#include "core/app_progress_bar.h"
#include "core/reports/app_progress_impl.h"

#include "tests/support/recording_progress.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

TEST(core_progress, a_null_bar_takes_every_call_and_does_nothing) {
    const bk::Progress progress(nullptr);
    EXPECT_FALSE(static_cast<bool>(progress));
    {
        const bk::ProgressTask labelled(progress, 0.5f);
        const bk::ProgressTask plain(progress);
        progress.set_step_count(3);
        progress.step(1);
        progress.set_value(0.25f);
    }
    EXPECT_FALSE(static_cast<bool>(progress));
}

TEST(core_progress, calls_reach_a_bar_in_order) {
    RecordingProgress bar;
    const bk::Progress progress(&bar);
    EXPECT_TRUE(static_cast<bool>(progress));
    {
        const bk::ProgressTask outer(progress, 0.5f);
        progress.set_step_count(3);
        progress.step(1);
        {
            const bk::ProgressTask inner(progress);
            progress.set_value(0.25f);
        }
    }
    EXPECT_EQ(bar.calls,
              (std::vector<std::string>{"begin_task(\"\", 0.5, false)", "set_step_count(3)", "step(1)",
                                        "begin_task(false)", "set_value(0.25)", "end_task()", "end_task()"}));
    EXPECT_EQ(bar.open_tasks(), 0);
}

TEST(core_progress, a_task_is_ended_on_every_way_out_of_its_scope) {
    RecordingProgress bar;
    const auto leave_early = [&](bool early) {
        const bk::ProgressTask task(bk::Progress(&bar), 1.0f);
        if (early) {
            return 1;
        }
        return 2;
    };
    EXPECT_EQ(leave_early(true) + leave_early(false), 3);
    EXPECT_EQ(bar.open_tasks(), 0);
    EXPECT_EQ(bar.calls.size(), 4u);
}

TEST(core_progress, the_base_bar_shows_nothing_and_can_be_called) {
    AppProgressBar bar;
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    bar.begin_task(CoreString("label"), 0.5f, false);
    bar.begin_task(true);
    bar.set_step_count(2);
    bar.step(1);
    bar.set_value(1.0f);
    bar.end_task();
    bar.end_task();
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

} // namespace
