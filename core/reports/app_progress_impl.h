#pragma once

#include "core/app_progress_bar.h"

#include <utility>

namespace bk {

/// The library's calls on a progress bar that may be null.
class Progress {
public:
    explicit Progress(AppProgressBar* bar) noexcept : bar_(bar) {}

    explicit operator bool() const noexcept { return bar_ != nullptr; }

    void set_value(float value) const {
        if (bar_ != nullptr) {
            bar_->set_value(value);
        }
    }
    void set_step_count(unsigned int count) const {
        if (bar_ != nullptr) {
            bar_->set_step_count(count);
        }
    }
    void step(unsigned int step) const {
        if (bar_ != nullptr) {
            bar_->step(step);
        }
    }

private:
    friend class ProgressTask;
    AppProgressBar* bar_;
};

/// A task that ends with its scope. Call `end` on the normal way out: it passes on what the host throws. The destructor ends the
/// task when an exception leaves the scope, and drops what the host throws then, so that the first exception stays.
class ProgressTask {
public:
    ProgressTask(const Progress& progress, float share) : bar_(progress.bar_) {
        if (bar_ != nullptr) {
            bar_->begin_task(CoreString(), share, false);
        }
    }
    explicit ProgressTask(const Progress& progress) : bar_(progress.bar_) {
        if (bar_ != nullptr) {
            bar_->begin_task(false);
        }
    }
    ~ProgressTask() {
        try {
            end();
        } catch (...) {
            return; // the first exception is on its way
        }
    }
    void end() {
        if (bar_ != nullptr) {
            std::exchange(bar_, nullptr)->end_task();
        }
    }
    ProgressTask(const ProgressTask&) = delete;
    ProgressTask& operator=(const ProgressTask&) = delete;

private:
    AppProgressBar* bar_;
};

/// Runs an action inside a task. The last arguments are those of the task.
template <class Action, class... Share>
auto within_task(const Progress& progress, Action action, Share... share) {
    ProgressTask task(progress, share...);
    auto result = action();
    task.end();
    return result;
}

} // namespace bk
