#pragma once

#include "core/app_progress_bar.h"

#include <sstream>
#include <string>
#include <vector>

/// A progress bar that records every call as a line of text, such as `begin_task("", 0.5, false)`.
class RecordingProgress : public AppProgressBar {
public:
    std::vector<std::string> calls;
    std::vector<float> values;
    std::vector<unsigned int> steps;

    void begin_task(const CoreString& label, const float& share, const bool& flag) override {
        ++depth_;
        note("begin_task(\"", label.get_view(), "\", ", share, ", ", flag, ")");
    }
    void begin_task(const bool& flag) override {
        ++depth_;
        note("begin_task(", flag, ")");
    }
    void set_step_count(const unsigned int& count) override { note("set_step_count(", count, ")"); }
    void step(const unsigned int& step) override {
        steps.push_back(step);
        note("step(", step, ")");
    }
    void set_value(const float& value) override {
        values.push_back(value);
        note("set_value(", value, ")");
    }
    unsigned int end_task() override {
        --depth_;
        note("end_task()");
        return 0;
    }

    /// The number of tasks that were begun and not ended.
    int open_tasks() const { return depth_; }

    /// All calls except `step`.
    std::vector<std::string> calls_without_steps() const {
        std::vector<std::string> result;
        for (const std::string& call : calls) {
            if (call.rfind("step(", 0) != 0) {
                result.push_back(call);
            }
        }
        return result;
    }

private:
    template <class... Parts>
    void note(const Parts&... parts) {
        std::ostringstream line;
        line << std::boolalpha;
        (line << ... << parts);
        calls.push_back(line.str());
    }

    int depth_ = 0;
};
