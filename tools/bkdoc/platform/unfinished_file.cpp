#include "platform/unfinished_file.h"

#if !defined(_WIN32)
#include <algorithm>
#include <csignal>
#include <unistd.h>
#include <vector>
#endif

namespace bkdoc {

#if defined(_WIN32)

void watch_ending_signals() {}
SignalsHeld::SignalsHeld() {}
SignalsHeld::~SignalsHeld() {}
void note_unfinished_file(const std::string&) {}
void forget_unfinished_file(const std::string&) {}

#else

namespace {

constexpr int ending_signals[] = {SIGINT, SIGTERM, SIGHUP};

// Only the tool's main thread changes it, with the signals blocked, so that the handler never sees a half-made change. It is
// never destroyed, because the handler may run while the process ends.
std::vector<std::string>& unfinished() {
    static auto* const files = new std::vector<std::string>();
    return *files;
}

sigset_t ending_set() {
    sigset_t set;
    sigemptyset(&set);
    for (const int signal : ending_signals) {
        sigaddset(&set, signal);
    }
    return set;
}

// Calls only functions that a signal handler may call. The signal is blocked until the handler returns; then it ends the
// process.
void remove_and_end(int signal) {
    for (const std::string& path : unfinished()) {
        ::unlink(path.c_str());
    }
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}

} // namespace

void watch_ending_signals() {
    unfinished(); // made here, because a handler may not allocate
    struct sigaction action {};
    action.sa_handler = remove_and_end;
    action.sa_mask = ending_set();
    for (const int signal : ending_signals) {
        struct sigaction before {};
        if (::sigaction(signal, nullptr, &before) == 0 && before.sa_handler != SIG_IGN) {
            ::sigaction(signal, &action, nullptr);
        }
    }
}

SignalsHeld::SignalsHeld() {
    const sigset_t set = ending_set();
    sigset_t before;
    ::sigprocmask(SIG_BLOCK, &set, &before);
    is_outermost_ = ::sigismember(&before, ending_signals[0]) == 0;
}

SignalsHeld::~SignalsHeld() {
    if (is_outermost_) {
        const sigset_t set = ending_set();
        ::sigprocmask(SIG_UNBLOCK, &set, nullptr);
    }
}

void note_unfinished_file(const std::string& path) {
    unfinished().push_back(path);
}

void forget_unfinished_file(const std::string& path) {
    std::erase(unfinished(), path);
}

#endif

} // namespace bkdoc
