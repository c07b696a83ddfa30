#pragma once

#include "core/memory/core_count_impl.h"
#include "core/reports/core_diagnostic_impl.h"

#include <new>

/// Wraps public operations. Inside the library, running out of memory is an exception; the wrapper turns it into the operation's
/// result.
namespace bk {

/// Logs "<operation>: out of memory\n" at level 1. Composing it takes no memory. When the handler throws std::bad_alloc,
/// nothing is logged. Every other exception of the handler passes.
void report_out_of_memory(const char* operation);

/// Runs an operation. When memory runs out, or a count passes 32 bits, logs that and returns `failure`. The log handler may throw
/// as well, so the operation must clean up in its own destructors.
template <class Result, class Action>
Result guarded(const char* operation, Result failure, Action action) {
    const KeptErrno kept;
    try {
        return action();
    } catch (const std::bad_alloc&) {
        report_out_of_memory(operation);
    } catch (const CountRefused&) {
        report_out_of_memory(operation);
    }
    return failure;
}

/// Guards an operation without a result in the same way. Returns whether it was completed.
template <class Action>
bool completed(const char* operation, Action action) {
    return guarded(operation, false, [&action] {
        action();
        return true;
    });
}

} // namespace bk
