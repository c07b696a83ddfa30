#pragma once

#include "core/core_export.h"
#include "core/core_string.h"

/// Shows the progress of long operations. Tasks nest: each `begin_task` opens one inside the current one and
/// each `end_task` closes the innermost. The operations of this base do nothing; a host overrides those it shows. An exception
/// that they throw ends the operation and passes to its caller, after the open tasks were ended; what `end_task` throws then is
/// dropped. One exception is different: std::bad_alloc counts as the library's own in operations that have a result.
class BK_PARSER_API AppProgressBar {
public:
    AppProgressBar() = default;
    virtual ~AppProgressBar();

    /// Opens a task with a label that takes `share` (0 to 1) of the current task.
    virtual void begin_task(const CoreString& label, const float& share, const bool& flag);
    /// Opens a task without a label.
    virtual void begin_task(const bool& flag);
    /// How many steps the current task has, and which step it has reached.
    virtual void set_step_count(const unsigned int& count);
    /// The step that the current task has reached.
    virtual void step(const unsigned int& step);
    /// The current task's progress, 0 to 1.
    virtual void set_value(const float& value);
    /// Closes the innermost task.
    virtual unsigned int end_task();
};
