#pragma once

#include <csignal>
#include <functional>
#include <sys/ptrace.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

/// A child process that is killed before or after one of its system calls. Linux only.
namespace killed_child {

inline constexpr int not_permitted = 77;
inline constexpr int more_than_any_needs = 2000;

enum class End { killed, done, not_traced };

/// Runs `action` in a child process that is killed at the n-th place, counted from 1. Every system call has two places, before it and after
/// it. Records the calls.
inline End run_killed_at(int n, const std::function<void()>& action, std::vector<long>& calls) {
    const pid_t child = ::fork();
    if (child == 0) {
        if (::ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0) {
            ::_exit(not_permitted);
        }
        ::raise(SIGSTOP);
        action();
        ::_exit(0);
    }
    int status = 0;
    if (child < 0 || ::waitpid(child, &status, 0) != child || !WIFSTOPPED(status)) {
        return End::not_traced;
    }
    ::ptrace(PTRACE_SETOPTIONS, child, nullptr, PTRACE_O_TRACESYSGOOD | PTRACE_O_EXITKILL);
    calls.clear();
    for (int places = 0;;) {
        ::ptrace(PTRACE_SYSCALL, child, nullptr, nullptr);
        ::waitpid(child, &status, 0);
        if (!WIFSTOPPED(status)) {
            return WIFEXITED(status) && WEXITSTATUS(status) == 0 ? End::done : End::not_traced;
        }
        if (WSTOPSIG(status) != (SIGTRAP | 0x80)) {
            continue;
        }
        struct __ptrace_syscall_info info {};
        if (::ptrace(PTRACE_GET_SYSCALL_INFO, child, sizeof info, &info) > 0 &&
            info.op == PTRACE_SYSCALL_INFO_ENTRY) {
            calls.push_back(static_cast<long>(info.entry.nr));
        }
        if (++places == n) {
            ::kill(child, SIGKILL);
            ::waitpid(child, &status, 0);
            return End::killed;
        }
    }
}

} // namespace killed_child
