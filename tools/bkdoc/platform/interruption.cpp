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

Interruption::Interruption() noexcept : before_(std::signal(SIGINT, note_interrupt)) {}

Interruption::~Interruption() {
    std::signal(SIGINT, before_);
}

bool Interruption::is_wanted() noexcept {
    return is_interrupted;
}

} // namespace bkdoc
