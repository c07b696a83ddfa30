#pragma once

#include "core/memory/core_count_impl.h"
#include "core/reports/core_diagnostic_impl.h"

#include <new>

/// What stands between the library's insides, where memory that has run out is an exception, and its callers, who
/// get a result that says so.
namespace bk {

/// "<operation>: out of memory\n" at level 1, composed without memory. Nothing is logged when the handler itself has none;
/// anything else that it throws passes.
void report_out_of_memory(const char* operation);

/// Runs an operation. When memory runs out, or a count of it passes 32 bits, that is logged and the result is `failure`.
/// The handler may throw: what the operation has to undo, it undoes itself, on its way out.
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

/// The same for an operation that can only be whole or not.
template <class Action>
bool completed(const char* operation, Action action) {
    return guarded(operation, false, [&action] {
        action();
        return true;
    });
}

} // namespace bk
