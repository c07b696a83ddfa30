#include "platform/unfinished_file.h"

#if !defined(_WIN32)
#include <array>
#include <csignal>
#include <unistd.h>
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

// Only the tool's one thread changes it, with the signals held: the handler sees it whole, at the end of the process, too.
// No file has a longer path.
std::array<char, 4096> unfinished{};

sigset_t ending_set() {
    sigset_t set;
    sigemptyset(&set);
    for (const int signal : ending_signals) {
        sigaddset(&set, signal);
    }
    return set;
}

// Calls what a handler may call, and no more. The signal is blocked until the handler returns; then it ends the process.
void remove_and_end(int signal) {
    if (unfinished.front() != '\0') {
        ::unlink(unfinished.data());
    }
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}

} // namespace

void watch_ending_signals() {
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
    ::sigprocmask(SIG_BLOCK, &set, nullptr);
}

SignalsHeld::~SignalsHeld() {
    const sigset_t set = ending_set();
    ::sigprocmask(SIG_UNBLOCK, &set, nullptr);
}

void note_unfinished_file(const std::string& path) {
    if (path.size() < unfinished.size()) {
        path.copy(unfinished.data(), path.size());
        unfinished[path.size()] = '\0';
    }
}

void forget_unfinished_file(const std::string& path) {
    if (path == unfinished.data()) {
        unfinished.front() = '\0';
    }
}

#endif

} // namespace bkdoc
