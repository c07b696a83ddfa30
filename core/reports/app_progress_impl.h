#pragma once

#include "core/app_progress_bar.h"

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

/// A task that is ended on every way out of its scope.
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
        if (bar_ != nullptr) {
            bar_->end_task();
        }
    }
    ProgressTask(const ProgressTask&) = delete;
    ProgressTask& operator=(const ProgressTask&) = delete;

private:
    AppProgressBar* bar_;
};

} // namespace bk
