#include "platform/change_waiter.h"

#include "platform/interruption.h"

#include <chrono>
#include <thread>

#if defined(__linux__)
#include <poll.h>
#include <sys/inotify.h>
#include <unistd.h>
#endif

namespace bkdoc {

namespace {

constexpr std::chrono::milliseconds pause{500};

} // namespace

#if defined(__linux__)

namespace {

constexpr std::chrono::milliseconds settling{50}; // an editor replaces a file in several steps

void drain(int events) {
    char buffer[4096];
    while (read(events, buffer, sizeof buffer) > 0) {
    }
}

} // namespace

ChangeWaiter::ChangeWaiter(const std::vector<std::filesystem::path>& folders)
    : events_(inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {
    constexpr unsigned int changes = IN_CLOSE_WRITE | IN_MODIFY | IN_MOVED_FROM | IN_MOVED_TO | IN_CREATE |
                                     IN_DELETE | IN_ATTRIB | IN_DELETE_SELF | IN_MOVE_SELF;
    for (const std::filesystem::path& folder : folders) {
        std::error_code error;
        const bool is_there = std::filesystem::is_directory(folder, error);
        if (events_ >= 0 && is_there && inotify_add_watch(events_, folder.c_str(), changes) < 0) {
            close(events_); // the system ran out of watches
            events_ = -1;
        }
    }
}

ChangeWaiter::~ChangeWaiter() {
    if (events_ >= 0) {
        close(events_);
    }
}

bool ChangeWaiter::wait() const {
    if (events_ < 0) {
        std::this_thread::sleep_for(pause);
        return !Interruption::is_wanted();
    }
    pollfd asked{events_, POLLIN, 0};
    while (!Interruption::is_wanted()) {
        if (poll(&asked, 1, static_cast<int>(pause.count())) > 0) {
            std::this_thread::sleep_for(settling);
            drain(events_);
            return !Interruption::is_wanted();
        }
    }
    return false;
}

#else

ChangeWaiter::ChangeWaiter(const std::vector<std::filesystem::path>&) {}

ChangeWaiter::~ChangeWaiter() = default;

bool ChangeWaiter::wait() const {
    std::this_thread::sleep_for(pause);
    return !Interruption::is_wanted();
}

#endif

} // namespace bkdoc
