#include "platform/interruption.h"

#include <atomic>
#include <csignal>

namespace bkdoc {

namespace {

std::atomic<bool> is_interrupted = false;
static_assert(std::atomic<bool>::is_always_lock_free, "a signal handler sets it");

void note_interrupt(int) {
    is_interrupted = true;
}

} // namespace

#if defined(_WIN32)

Interruption::Interruption() noexcept : before_(std::signal(SIGINT, note_interrupt)) {}

Interruption::~Interruption() {
    std::signal(SIGINT, before_);
}

#else

// An ignored signal stays ignored.
Interruption::Interruption() noexcept {
    struct sigaction action {};
    action.sa_handler = note_interrupt;
    sigemptyset(&action.sa_mask);
    ::sigaction(SIGINT, nullptr, &before_);
    if (before_.sa_handler != SIG_IGN) {
        ::sigaction(SIGINT, &action, nullptr);
    }
}

Interruption::~Interruption() {
    ::sigaction(SIGINT, &before_, nullptr);
}

#endif

bool Interruption::is_wanted() noexcept {
    return is_interrupted;
}

} // namespace bkdoc
