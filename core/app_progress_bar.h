#pragma once

#include "core/core_export.h"
#include "core/core_string.h"

/// Shows the progress of long operations. Tasks nest: `begin_task` opens a task inside the current one, and `end_task` closes the
/// innermost. The functions of this base class do nothing; a host overrides those that it needs.
///
/// When one of them throws, the library ends the open tasks, drops what `end_task` throws meanwhile, and passes the exception to
/// the caller of the operation. A `begin_task` that throws opens no task, and gets no `end_task`. One exception is different: in an
/// operation that returns a result, std::bad_alloc counts as running out of memory.
class BK_PARSER_API AppProgressBar {
public:
    AppProgressBar() = default;
    virtual ~AppProgressBar();

    /// Opens a task with a label that takes `share` (0 to 1) of the current task.
    virtual void begin_task(const CoreString& label, const float& share, const bool& flag);
    /// Opens a task without a label.
    virtual void begin_task(const bool& flag);
    /// The number of steps of the current task.
    virtual void set_step_count(const unsigned int& count);
    /// The step that the current task has reached.
    virtual void step(const unsigned int& step);
    /// The current task's progress, 0 to 1.
    virtual void set_value(const float& value);
    /// Closes the innermost task.
    virtual unsigned int end_task();
};
