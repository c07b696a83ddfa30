#pragma once

#include <filesystem>
#include <vector>

namespace bkdoc {

/// Waits for changes of what is in folders: told by the system where it can (inotify), else by looking twice a second.
class ChangeWaiter {
public:
    explicit ChangeWaiter(const std::vector<std::filesystem::path>& folders);
    ~ChangeWaiter();
    ChangeWaiter(const ChangeWaiter&) = delete;
    ChangeWaiter& operator=(const ChangeWaiter&) = delete;

    /// Comes back when something may have changed; the caller looks what. False after an interrupt.
    bool wait() const;

private:
    int events_ = -1; // of the system; -1 when there are none
};

} // namespace bkdoc
